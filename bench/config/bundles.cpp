#include "orv/Reference.h"
#include "orv/collections/StringHashMap.h"
#include "orv/exec/SharedLibrary.h"
#include "orv/i18n/StringMapBundle.h"
#include "orv/quark/Component.h"

#include "bench/common/Case.h"
#include "bench/common/Corpus.h"

#include <chrono>
#include <cstdio>
#include <fstream>
#include <string>
#include <thread>
#include <unordered_map>
#include <vector>

#include <sys/stat.h>
#include <unistd.h>

#if __has_include(<libintl.h>)
#include <clocale>
#include <libintl.h>
#endif

// The texts of a program in one language, 1,000 of them: asked for by key in a mixed order, and
// their bundle opened. The library's come from a message catalogue by way of its component.

namespace orv::bench {
namespace {

using namespace orv::i18n;

constexpr int TEXTS = 1000;
constexpr const char* GET = "bundle_get/of_1000";
constexpr const char* GET_IN_MEMORY = "bundle_get_in_memory/of_1000";
constexpr const char* OPEN = "bundle_open/of_1000";
constexpr const char* READ = "bundle_read/of_1000";

struct Message {
    std::string key, text;
};

const std::vector<Message>& messages()
{
    static const std::vector<Message> all = [] {
        std::vector<Message> list;
        for (int i = 0; i < TEXTS; ++i) {
            const std::string number = std::to_string(i * 7919 % 10007);
            list.push_back({"module.message." + number, "The text number " + number + " for {0}."});
        }
        return list;
    }();
    return all;
}

/// Asks for 1,024 keys in a mixed order; `get` gives the length of a text.
template <class Keys, class Get>
void measureGets(benchmark::State& state, const Keys& keys, Get get)
{
    std::vector<std::size_t> order;
    Random random(5);
    for (int i = 0; i < 1024; ++i) order.push_back(random.below(TEXTS));
    std::size_t i = 0;
    for (auto _ : state) {
        const std::size_t at = order[i++ & 1023];
        if (get(keys[at]) != messages()[at].text.size()) {
            state.SkipWithError("wrong text");
            break;
        }
    }
}

std::vector<String> orvKeys()
{
    std::vector<String> keys;
    for (const Message& message : messages()) keys.emplace_back(message.key.c_str());
    return keys;
}

// The library

/// The catalogue, registered in a store of its own.
class Catalogue {
public:
    Catalogue()
    {
        ::setenv("ORV_REGISTRY", m_store.c_str(), 1);
        write();
        exec::SharedLibrary library(String(ORV_TEXTBUNDLE).getData());
        const auto add = reinterpret_cast<decltype(&ORVRegisterCatalogue)>(
            library.getSymbol(u"ORVRegisterCatalogue"));
        add(String(ORV_TEXTBUNDLE).getData(), String(m_file.c_str()).getData());
    }
    Catalogue(const Catalogue&) = delete;
    Catalogue& operator=(const Catalogue&) = delete;
    ~Catalogue()
    {
        for (const char* tail : {"", "-wal", "-shm"}) ::unlink((m_store + tail).c_str());
        ::unlink(m_file.c_str());
    }

    void write() const
    {
        std::ofstream out(m_file, std::ios::binary);
        for (const Message& message : messages())
            out << message.key << " = " << message.text << '\n';
    }

    static Reference<StringBundle> open()
    {
        static const auto locale = makeReference<Locale>(u"de");
        return StringBundle::getBundle(u"OrvBench", locale.get());
    }

private:
    std::string m_store = dataFolder() + "/orv_bench_bundles.db";
    std::string m_file = dataFolder() + "/OrvBench.de.messages";
};

void measureBundle(benchmark::State& state, StringBundle& bundle)
{
    measureGets(state, orvKeys(), [&](const String& key) {
        return static_cast<std::size_t>(bundle.getString(key).getLength());
    });
}

const bool library = [] {
    addCase(GET, LIBRARY, [](benchmark::State& state) {
        const Catalogue catalogue;
        measureBundle(state, *Catalogue::open());
    });
    addCase(GET_IN_MEMORY, LIBRARY, [](benchmark::State& state) {
        const auto map = makeReference<collections::StringHashMap>();
        for (const Message& message : messages()) {
            map->put(message.key.c_str(), makeReference<String>(message.text.c_str()).get());
        }
        measureBundle(state, *makeReference<StringMapBundle>(map.get(), nullptr));
    });
    addCase(OPEN, LIBRARY, [](benchmark::State& state) {
        const Catalogue catalogue;
        // A file that has just been written is read at each opening.
        std::this_thread::sleep_for(std::chrono::milliseconds(2100));
        for (auto _ : state) benchmark::DoNotOptimize(Catalogue::open().get());
    });
    addCase(READ, LIBRARY, [](benchmark::State& state) {
        const Catalogue catalogue;
        for (auto _ : state) {
            state.PauseTiming();
            catalogue.write();
            state.ResumeTiming();
            benchmark::DoNotOptimize(Catalogue::open().get());
        }
    });
    return true;
}();

// A map of the standard library that gives out copies, as getString() does.

const bool map = [] {
    addCase(GET_IN_MEMORY, "ref_unordered_map", [](benchmark::State& state) {
        std::unordered_map<std::u16string, std::u16string> texts;
        std::vector<std::u16string> keys;
        for (const Message& message : messages()) {
            keys.emplace_back(message.key.begin(), message.key.end());
            texts.emplace(keys.back(), std::u16string(message.text.begin(), message.text.end()));
        }
        measureGets(state, keys, [&](const std::u16string& key) {
            const std::u16string text = texts.find(key)->second;
            return text.size();
        });
    });
    return true;
}();

#if __has_include(<libintl.h>)
/// A catalogue of the C library, made by its own compiler; empty where that is not installed.
bool writeGettext(const std::string& folder)
{
    for (const char* part : {"", "/de", "/de/LC_MESSAGES"}) ::mkdir((folder + part).c_str(), 0777);
    {
        std::ofstream out(folder + "/texts.po");
        out << "msgid \"\"\nmsgstr \"Content-Type: text/plain; charset=UTF-8\\n\"\n";
        for (const Message& message : messages()) {
            out << "msgid \"" << message.key << "\"\nmsgstr \"" << message.text << "\"\n";
        }
    }
    const std::string command =
        "msgfmt -o " + folder + "/de/LC_MESSAGES/orv_bench.mo " + folder + "/texts.po 2>/dev/null";
    return std::system(command.c_str()) == 0;
}

const bool gettextPeer = [] {
    addCase(GET, "gettext", [](benchmark::State& state) {
        const std::string folder = dataFolder() + "/orv_bench_gettext";
        ::setenv("LANGUAGE", "de", 1);
        std::setlocale(LC_ALL, "C.UTF-8");
        if (!writeGettext(folder) || ::bindtextdomain("orv_bench", folder.c_str()) == nullptr) {
            state.SkipWithError("no msgfmt");
            return;
        }
        std::vector<std::string> keys;
        for (const Message& message : messages()) keys.push_back(message.key);
        measureGets(state, keys, [](const std::string& key) {
            return std::string(::dgettext("orv_bench", key.c_str())).size();
        });
    });
    return true;
}();
#endif

} // namespace
} // namespace orv::bench
