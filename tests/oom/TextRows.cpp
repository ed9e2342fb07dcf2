#include "Sweep.h"

#include "orv/util/MTCharBuffer.h"

#include <array>
#include <iterator>

namespace orv::test {

namespace {

constexpr char16_t TEXT[] = u"  one {0} two and {1}, that is more than thirty-two units \t";
constexpr const char16_t* MORE = u" and then some more, again longer than a granule";
constexpr STRUCT_ORV_STR_LIT_INFO LITERAL{TEXT, std::size(TEXT) - 1};

/// What a String can hold.
struct Kind {
    const char* name;
    String (*make)();
    bool isItsOwn = true; ///< what changes nothing in length needs no memory
};

String sharedText()
{
    static const String s_text(TEXT);
    return s_text;
}

const std::array KINDS{
    Kind{"a private text", [] { return String(TEXT); }},
    Kind{"a text with bytes kept",
         [] {
             String text(TEXT);
             text.getBytes();
             return text;
         }},
    Kind{"a literal", [] { return String(LITERAL); }, false},
    Kind{"a shared text", &sharedText, false},
    Kind{"a locked buffer",
         [] {
             const auto buffer = makeReference<util::MTCharBuffer>(TEXT, LITERAL.length + 1, 0);
             return String(AcquireMode::AcquireAddRef, buffer.get());
         }},
    Kind{"a shared locked buffer",
         [] {
             static const auto s_buffer =
                 makeReference<util::MTCharBuffer>(TEXT, LITERAL.length + 1, 0);
             return String(AcquireMode::AcquireAddRef, s_buffer.get());
         },
         false},
};

struct Edit {
    const char* name;
    void (*apply)(String& text);
    bool inPlace = false; ///< in a text that is its own
};

const std::array EDITS{
    Edit{"append", [](String& text) { text.append(MORE); }},
    Edit{"replace a part", [](String& text) { text.replace(3, 2, MORE, -1, 3); }},
    Edit{"assign", [](String& text) { text = String(u'y', 1000); }},
    Edit{"assign bytes", [](String& text) { text = "bytes, bytes and more bytes"; }},
    Edit{"alias", [](String& text) { text.setTo(AcquireMode::AcquireAlias, MORE); }},
    Edit{"resize", [](String& text) { text.resize(600, u'-'); }},
    Edit{"format", [](String& text) { text.format(text, MORE, TEXT); }},
    Edit{"a write bracket",
         [](String& text) {
             text.getWriteLock(3000);
             text.releaseWriteLock(-1);
         }},
    Edit{"copy a buffer",
         [](String& text) {
             String source(u'y', 1000);
             ORVCopyCharBuffer(&text, &source);
         }},
    Edit{"share another", [](String& text) { text.setAddRef(String(MORE)); }},
    Edit{"keep bytes", [](String& text) { text.getBytes(u"UTF-8"); }},
    Edit{"to upper case", [](String& text) { text.toUpper(); }, true},
    Edit{"trim", [](String& text) { text.trim(); }, true},
};

void addEdits(std::vector<Row>& rows)
{
    for (const Kind& kind : KINDS) {
        for (const Edit& edit : EDITS) {
            if (edit.inPlace && kind.isItsOwn) continue;
            rows.push_back(row(std::string(edit.name) + ": " + kind.name, kind.make, edit.apply));
        }
    }
}

/// Through the interface, where E_OUTOFMEMORY is returned.
template <class Call>
void addInterface(std::vector<Row>& rows, const char* name, Call call)
{
    for (const Kind& kind : {KINDS[0], KINDS[3], KINDS[4], KINDS[5]}) {
        rows.push_back(row(std::string(name) + ": " + kind.name, kind.make, [=](String& text) {
            util::ICharBuffer& buffer = text;
            return call(buffer);
        }));
    }
}

void addInterfaces(std::vector<Row>& rows)
{
    addInterface(rows, "EnsureCapacity", [](util::ICharBuffer& buffer) {
        char16_t* units = nullptr;
        Result result = buffer.GetWriteLock(0, &units);
        if (failed(result)) return result;
        const Result grown = buffer.EnsureCapacity(2000, &units);
        result = buffer.ReleaseWriteLock(buffer.GetLength());
        return failed(grown) ? grown : result;
    });
    addInterface(rows, "ReleaseWriteLock", [](util::ICharBuffer& buffer) {
        char16_t* units = nullptr;
        Result result = buffer.GetWriteLock(0, &units);
        if (failed(result)) return result;
        const std::int32_t length = buffer.GetLength();
        result = buffer.ReleaseWriteLock(length + 100);
        if (failed(result)) {
            static_cast<void>(buffer.ReleaseWriteLock(length)); // the bracket is still open
            return result;
        }
        result = buffer.GetWriteLock(0, &units);
        if (failed(result)) return result;
        return buffer.ReleaseWriteLock(length);
    });
}

void addProducts(std::vector<Row>& rows)
{
    rows.insert(
        rows.end(),
        {
            product("String in upper case",
                    [] { return String(AcquireMode::AcquireCopyUpper, TEXT); }),
            product("String of a region",
                    [] { return String(AcquireMode::AcquireCopy, sharedText(), 2, 40, 600); }),
            product("String of UTF-8", [] { return String("\xC3\xA4\xE2\x82\xAC", -1, u"UTF-8"); }),
            product("concatenation", [] { return sharedText() + MORE + sharedText(); }),
            product("clone", [] { return Reference<Object>(sharedText().clone()); }),
        });
}

} // namespace

std::vector<Row> textRows()
{
    std::vector<Row> rows;
    addEdits(rows);
    addInterfaces(rows);
    addProducts(rows);
    return rows;
}

} // namespace orv::test
