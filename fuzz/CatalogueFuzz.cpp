#include "components/textbundle/Catalogue.h"

#include <cstdint>
#include <cstdlib>
#include <set>
#include <string>

/// \file
/// Message catalogues of any bytes: each line is told at most once, each text is found by its key,
/// and the texts written as a catalogue again are the same texts.

namespace {

using orv::components::textbundle::Catalogue;

void require(bool holds)
{
    if (!holds) std::abort();
}

void appendEscaped(orv::String& out, std::u16string_view text)
{
    for (const char16_t unit : text) {
        switch (unit) {
        case u'\n': out.append(u"\\n"); break;
        case u'\r': out.append(u"\\r"); break;
        case u'\t': out.append(u"\\t"); break;
        case u' ':
        case u'\\':
        case u'#':
        case u'=': out.append(u'\\'); [[fallthrough]];
        default: out.append(unit);
        }
    }
}

std::string writtenAgain(const Catalogue& catalogue)
{
    orv::String text(u"\uFEFF"); // or it would be taken off a key that begins with it
    for (const auto& entry : catalogue.entries()) {
        appendEscaped(text, entry.key);
        text.append(u"\t= ");
        appendEscaped(text, entry.text);
        text.append(u"\r\n");
    }
    return text.getBytes(u"UTF-8");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string bytes(reinterpret_cast<const char*>(data), size);
    std::set<std::int32_t> broken;
    const auto catalogue = orv::makeReference<const Catalogue>(
        bytes, [&](std::int32_t line, const char16_t*) { require(broken.insert(line).second); });
    std::size_t lines = 1;
    for (const char byte : bytes) lines += byte == '\n' ? 1 : 0;
    require(broken.size() + catalogue->entries().size() <= lines);
    require(broken.empty() || (*broken.begin() >= 1 && *broken.rbegin() <= std::int32_t(lines)));
    for (const auto& entry : catalogue->entries()) require(catalogue->find(entry.key) == &entry);

    const auto again = orv::makeReference<const Catalogue>(
        writtenAgain(*catalogue), [](std::int32_t, const char16_t*) { std::abort(); });
    require(again->entries().size() == catalogue->entries().size());
    for (std::size_t i = 0; i < again->entries().size(); ++i) {
        require(again->entries()[i].key == catalogue->entries()[i].key);
        require(again->entries()[i].text == catalogue->entries()[i].text);
    }
    return 0;
}
