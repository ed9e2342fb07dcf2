// Greets the guests of a house, each in the own language as far as there is a message catalogue.
//
//     orv component register -file=/usr/lib/orv/liborv-textbundle.so
//         -catalogue=Greetings.de.messages -catalogue=Greetings.fr.messages
//     example_greet_guests

#include <orv/Exception>
#include <orv/Reference>
#include <orv/String>
#include <orv/collections/StringHashMap>
#include <orv/i18n/Locale>
#include <orv/i18n/StringBundle>
#include <orv/i18n/StringMapBundle>

#include <cstdio>

using namespace orv;
using namespace orv::i18n;

namespace {

struct Guest {
    const char16_t *name, *locale, *room;
};

constexpr Guest guests[] = {
    {u"Anna", u"de_AT@euro", u"12"},
    {u"Béa", u"fr_CH", u"7"},
    {u"Cleo", u"en_GB", u"3"},
};

/// The texts that the program brings along, for when nobody has installed a catalogue.
Reference<StringBundle> ownTexts()
{
    const auto texts = makeReference<collections::StringHashMap>();
    texts->put(u"welcome", makeReference<String>(u"Welcome, {0}!").get());
    texts->put(u"room", makeReference<String>(u"{0}, you have room {1}.").get());
    return makeReference<StringMapBundle>(texts.get(), makeReference<Locale>(u"en").get());
}

/// The texts for a guest: `de_AT@euro` is served by a catalogue for `de` too.
Reference<StringBundle> textsFor(const Guest& guest)
{
    try {
        const auto locale = makeReference<Locale>(guest.locale);
        auto found = StringBundle::getBundle(u"Greetings", locale.get());
        // Not those of the default locale: whoever speaks neither language gets English.
        if (found->getLocale()->getLanguage() == locale->getLanguage()) return found;
    } catch (const Exception&) {
        // "Resource not found"
    }
    return ownTexts();
}

} // namespace

int main()
{
    for (const Guest& guest : guests) {
        const auto texts = textsFor(guest);
        for (const char16_t* key : {u"welcome", u"room"}) {
            String line;
            line.format(texts->getString(key), guest.name, guest.room);
            std::printf("%s\n", line.getBytes(u"UTF-8"));
        }
    }
    return 0;
}
