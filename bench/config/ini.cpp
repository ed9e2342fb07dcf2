#include "orv/Reference.h"
#include "orv/util/IniFile.h"

#include "bench/common/Case.h"
#include "bench/common/Corpus.h"

#include <fstream>
#include <map>
#include <string>
#include <vector>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#if __has_include(<Poco/Util/IniFileConfiguration.h>)
#include <Poco/AutoPtr.h>
#include <Poco/Util/IniFileConfiguration.h>
#include <Poco/Util/PropertyFileConfiguration.h>
#endif
#if __has_include(<QSettings>)
#include <QSettings>
#include <QString>
#endif
#if __has_include(<boost/property_tree/ini_parser.hpp>)
#include <boost/property_tree/ini_parser.hpp>
#include <boost/property_tree/ptree.hpp>
#endif

// A configuration file of 1,000 sets with 10 keys: loaded, asked for one value, one value changed
// and saved. Asking comes in two cases: as each library does it, and with a look whether the file
// has changed, which the library's own always has.

namespace orv::bench {
namespace {

constexpr int SETS = 1000;
constexpr int KEYS = 10;

std::string setName(int set)
{
    return "set" + std::to_string(set);
}

std::string keyName(int key)
{
    return "parameter" + std::to_string(key);
}

std::string valueText(int set, int key)
{
    return "value of " + std::to_string(set * 7919 % 10007) + " and " + std::to_string(key);
}

const std::string& iniText()
{
    static const std::string text = [] {
        std::string all;
        for (int set = 0; set < SETS; ++set) {
            all += "[" + setName(set) + "]\n";
            for (int key = 0; key < KEYS; ++key) {
                all += keyName(key) + "=" + valueText(set, key) + "\n";
            }
        }
        return all;
    }();
    return text;
}

std::string freshFile(const std::string& peer)
{
    const std::string path = dataFolder() + "/orv_bench_" + peer + ".ini";
    std::ofstream(path, std::ios::binary) << iniText();
    return path;
}

bool isThere(const std::string& path)
{
    struct stat status {};
    return stat(path.c_str(), &status) == 0 && status.st_mtime > 0;
}

/// Set and key of one question and its answer, in a fixed mixed order.
struct Probe {
    std::string set, key, value;
};

const std::vector<Probe>& probes()
{
    static const std::vector<Probe> all = [] {
        std::vector<Probe> list;
        Random random(5);
        for (int i = 0; i < 1024; ++i) {
            const int set = static_cast<int>(random.below(SETS));
            const int key = static_cast<int>(random.below(KEYS));
            list.push_back({setName(set), keyName(key), valueText(set, key)});
        }
        return list;
    }();
    return all;
}

constexpr const char* LOAD = "ini_load/1000x10";
constexpr const char* GET = "ini_get/of_10000";
constexpr const char* GET_CHECKED = "ini_get_with_check_of_file/of_10000";
constexpr const char* SET = "ini_set_and_save/1000x10";

/// `names` are made of the probes outside the measured loop, and `get` gives the length of the
/// value of one of them.
template <class Names, class Get>
void measureGets(benchmark::State& state, const Names& names, Get get)
{
    std::size_t i = 0;
    for (auto _ : state) {
        const std::size_t at = i++ & 1023;
        if (get(names[at]) != probes()[at].value.size()) {
            state.SkipWithError("wrong value");
            break;
        }
    }
}

// The library

using util::IniFile;

std::u16string wide(const std::string& text)
{
    return {text.begin(), text.end()};
}

const bool library = [] {
    addCase(LOAD, LIBRARY, [](benchmark::State& state) {
        const std::u16string path = wide(freshFile("orvcl"));
        for (auto _ : state) {
            IniFile file(path.c_str(), nullptr, 1);
            benchmark::DoNotOptimize(file);
        }
    });
    for (const char* testCase : {GET, GET_CHECKED}) {
        addCase(testCase, LIBRARY, [](benchmark::State& state) {
            IniFile file(wide(freshFile("orvcl_get")).c_str(), nullptr, 1);
            std::vector<std::pair<std::u16string, std::u16string>> names;
            for (const Probe& probe : probes()) {
                names.emplace_back(wide(probe.set), wide(probe.key));
            }
            measureGets(state, names, [&](const auto& name) {
                char16_t value[64];
                file.GetValue(name.first.c_str(), name.second.c_str(), value, 64);
                return static_cast<std::size_t>(ORVStrLenW(value));
            });
        });
    }
    addCase(SET, LIBRARY, [](benchmark::State& state) {
        IniFile file(wide(freshFile("orvcl_set")).c_str(), nullptr, 1);
        int number = 0;
        for (auto _ : state) {
            file.AddKey(u"set500", u"parameter5", wide(std::to_string(number++)).c_str(), true);
        }
    })->UseRealTime();
    return true;
}();

#if __has_include(<boost/property_tree/ini_parser.hpp>)
const bool boostTree = [] {
    using boost::property_tree::ptree;
    using namespace boost::property_tree::ini_parser;
    addCase(LOAD, "boost_ptree", [](benchmark::State& state) {
        const std::string path = freshFile("boost");
        for (auto _ : state) {
            ptree tree;
            read_ini(path, tree);
            benchmark::DoNotOptimize(tree);
        }
    });
    for (const bool checked : {false, true}) {
        addCase(checked ? GET_CHECKED : GET, "boost_ptree", [checked](benchmark::State& state) {
            const std::string path = freshFile("boost");
            ptree tree;
            read_ini(path, tree);
            measureGets(state, probes(), [&](const Probe& probe) {
                if (checked && !isThere(path)) return std::size_t{0};
                return tree.get_child(probe.set).get<std::string>(probe.key).size();
            });
        });
    }
    addCase(SET, "boost_ptree", [](benchmark::State& state) {
        const std::string path = freshFile("boost_set");
        ptree tree;
        read_ini(path, tree);
        int number = 0;
        for (auto _ : state) {
            tree.put("set500.parameter5", number++);
            write_ini(path, tree);
        }
    })->UseRealTime();
    return true;
}();
#endif

#if __has_include(<Poco/Util/IniFileConfiguration.h>)
const bool poco = [] {
    using namespace Poco::Util;
    using Ini = Poco::AutoPtr<IniFileConfiguration>;
    addCase(LOAD, "poco", [](benchmark::State& state) {
        const std::string path = freshFile("poco");
        for (auto _ : state) {
            Ini file(new IniFileConfiguration(path));
            benchmark::DoNotOptimize(file);
        }
    });
    for (const bool checked : {false, true}) {
        addCase(checked ? GET_CHECKED : GET, "poco", [checked](benchmark::State& state) {
            const std::string path = freshFile("poco");
            const Ini file(new IniFileConfiguration(path));
            measureGets(state, probes(), [&](const Probe& probe) {
                if (checked && !isThere(path)) return std::size_t{0};
                return file->getString(probe.set + "." + probe.key).size();
            });
        });
    }
    // Its class for such files does not save; the one for properties is the nearest that does.
    addCase(SET, "poco_properties", [](benchmark::State& state) {
        const std::string path = dataFolder() + "/orv_bench_poco.properties";
        Poco::AutoPtr<PropertyFileConfiguration> file(new PropertyFileConfiguration);
        for (int set = 0; set < SETS; ++set) {
            for (int key = 0; key < KEYS; ++key) {
                file->setString(setName(set) + "." + keyName(key), valueText(set, key));
            }
        }
        int number = 0;
        for (auto _ : state) {
            file->setInt("set500.parameter5", number++);
            file->save(path);
        }
        ::unlink(path.c_str());
    })->UseRealTime();
    return true;
}();
#endif

#if __has_include(<QSettings>)
void qtLoad(benchmark::State& state, bool allKeys)
{
    // Parsed files are kept by their names, so each pass needs a name of its own.
    int number = 0;
    for (auto _ : state) {
        state.PauseTiming();
        const std::string path = freshFile("qt" + std::to_string(number++));
        state.ResumeTiming();
        {
            QSettings file(QString::fromStdString(path), QSettings::IniFormat);
            const bool parsed = allKeys ? file.allKeys().size() == SETS * KEYS
                                        : file.value("set500/parameter5").isValid();
            if (!parsed) state.SkipWithError("not parsed");
        }
        state.PauseTiming();
        ::unlink(path.c_str());
        ::unlink((path + ".lock").c_str());
        state.ResumeTiming();
    }
}

const bool qt = [] {
    // A set is split into its keys only when it is asked for: once for all, once for one of them.
    addCase(LOAD, "qt", [](benchmark::State& state) { qtLoad(state, true); });
    addCase(LOAD, "ref_qt_one_set", [](benchmark::State& state) { qtLoad(state, false); });
    for (const bool checked : {false, true}) {
        addCase(checked ? GET_CHECKED : GET, "qt", [checked](benchmark::State& state) {
            const std::string path = freshFile("qt_get");
            const QSettings file(QString::fromStdString(path), QSettings::IniFormat);
            std::vector<QString> names;
            for (const Probe& probe : probes()) {
                names.push_back(QString::fromStdString(probe.set + "/" + probe.key));
            }
            measureGets(state, names, [&](const QString& name) {
                if (checked && !isThere(path)) return std::size_t{0};
                return static_cast<std::size_t>(file.value(name).toString().size());
            });
        });
    }
    addCase(SET, "qt", [](benchmark::State& state) {
        QSettings file(QString::fromStdString(freshFile("qt_set")), QSettings::IniFormat);
        int number = 0;
        for (auto _ : state) {
            file.setValue("set500/parameter5", number++);
            file.sync();
        }
    })->UseRealTime();
    return true;
}();
#endif

// Bounds

const bool bounds = [] {
    addCase(LOAD, "ref_map_of_maps", [](benchmark::State& state) {
        const std::string path = freshFile("ref");
        for (auto _ : state) {
            std::ifstream file(path);
            std::map<std::string, std::map<std::string, std::string>> sets;
            std::map<std::string, std::string>* set = nullptr;
            for (std::string line; std::getline(file, line);) {
                const std::size_t equals = line.find('=');
                if (line[0] == '[') {
                    set = &sets[line.substr(1, line.rfind(']') - 1)];
                } else if (equals != std::string::npos && set != nullptr) {
                    (*set)[line.substr(0, equals)] = line.substr(equals + 1);
                }
            }
            benchmark::DoNotOptimize(sets);
        }
    });
    addCase(GET_CHECKED, "limit_check_of_file", [](benchmark::State& state) {
        const std::string path = freshFile("ref");
        for (auto _ : state) benchmark::DoNotOptimize(isThere(path));
    });
    addCase(SET, "limit_rewrite_file", [](benchmark::State& state) {
        const std::string path = freshFile("limit_set");
        for (auto _ : state) {
            const int file = ::open(path.c_str(), O_CREAT | O_TRUNC | O_WRONLY, 0644);
            if (::write(file, iniText().data(), iniText().size()) < 0) {
                state.SkipWithError("write failed");
            }
            ::close(file);
        }
    })->UseRealTime();
    return true;
}();

} // namespace
} // namespace orv::bench
