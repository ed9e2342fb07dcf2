#include "tools/orv/Command.h"

#include "orv/Exception.h"
#include "orv/collections/List.h"
#include "orv/collections/quark/ArrayList.h"
#include "orv/i18n/StringBundle.h"
#include "orv/log/ILevelLogger.h"
#include "orv/log/StringBundleLogger.h"

namespace tool {
namespace {

using orv::makeReference;
using orv::Object;
using orv::Reference;
using orv::String;
using orv::io::PrintWriter;
using namespace orv::collections;
using namespace orv::i18n;
using namespace orv::log;

/// Keeps the text that was logged last.
class LastText : public orv::quark::Implements<Object, ILevelLogger> {
public:
    void log(std::int32_t, const String& text) override { m_text = text; }
    const String& text() const { return m_text; }

private:
    String m_text;
};

Reference<StringBundle> openBundle(const Arguments& arguments)
{
    const String name = arguments.text(u"bundle");
    Reference<Locale> locale;
    if (arguments.has(u"locale")) {
        locale = makeReference<Locale>(arguments.text(u"locale").getData());
    }
    try {
        return StringBundle::getBundle(name, locale.get());
    } catch (const orv::Exception& exception) {
        throw Failure{u"there is no bundle \"" + name + u"\"", exception.getResult()};
    }
}

Reference<List<Object>> listOf(const String& texts)
{
    auto list = makeReference<List<Object>>(makeReference<quark::ArrayList>().get());
    for (std::int32_t start = 0, end = 0; end >= 0; start = end + 1) {
        end = texts.indexOf(u',', start);
        list->add(makeReference<String>(texts.substring(start, end)).get());
    }
    return list;
}

void runText(const Arguments& arguments, PrintWriter& out)
{
    const String key = arguments.text(u"key");
    const Reference<StringBundle> bundle = openBundle(arguments);
    try {
        bundle->getString(key);
    } catch (const orv::Exception& exception) {
        throw Failure{u"bundle \"" + arguments.text(u"bundle") + u"\", " +
                          bundle->getLocale()->toString() + u", has no text for \"" + key + u"\"",
                      exception.getResult()};
    }
    // The texts of a bundle are filled in as its logger does it.
    const auto target = makeReference<LastText>();
    StringBundleLogger logger(bundle.get(), target.get());
    if (arguments.has(u"arg")) {
        logger.log(0, key, *listOf(arguments.verbatim(u"arg")));
    } else {
        logger.log(0, key);
    }
    out.println(target->text());
}

constexpr const char16_t* options[] = {u"bundle", u"key", u"locale", u"arg"};

} // namespace

const Command bundleText = {
    u"text",
    u"a text of a message catalogue",
    u" -bundle=NAME -key=KEY [-locale=TEXT] [-arg=A,B]\n\n"
    u"Prints the text of a key. The bundle is looked for in the locale given, in that of the\n"
    u"environment and in en_US, each first whole, then without what follows \"@\", then without "
    u"what\nfollows \"_\". \"orv component register\" makes catalogues known.\n\n"
    u"  -locale  as de_AT@euro\n"
    u"  -arg     what stands for {0}, {1} ... in the text, divided by commas; a text that asks "
    u"for\n"
    u"           more is printed as it is",
    options,
    0,
    &runText};

} // namespace tool
