#include "tools/orv/Command.h"

#include "orv/Exception.h"
#include "orv/Failure.h"
#include "orv/util/RegistryKey.h"

#include <algorithm>
#include <cstring>
#include <iterator>
#include <vector>

namespace tool {
namespace {

using orv::String;
using orv::io::PrintWriter;
using orv::util::RegistryKey;

/// Decimal digits up to `most`, -type naming what they are for.
std::uint64_t toNumber(const String& text, std::uint64_t most)
{
    std::uint64_t number = 0;
    for (std::int32_t i = 0; i < text.getLength(); ++i) {
        const auto digit = static_cast<std::uint64_t>(text[i] - u'0');
        if (digit > 9 || number > (most - digit) / 10) {
            throw UsageError{u"-value=" + text + u" is no whole number of this type"};
        }
        number = number * 10 + digit;
    }
    return number;
}

std::int32_t digitOf(char16_t unit)
{
    constexpr const char16_t* digits = u"0123456789abcdef";
    const char16_t* const digit = ORVStrChrW(digits, ORVToLowerW(unit));
    return unit == 0 || digit == nullptr ? -1 : static_cast<std::int32_t>(digit - digits);
}

std::vector<signed char> toBytes(const String& text)
{
    std::vector<signed char> bytes;
    for (std::int32_t i = 0; i < text.getLength(); i += 2) {
        const std::int32_t high = digitOf(text[i]);
        const std::int32_t low = i + 1 < text.getLength() ? digitOf(text[i + 1]) : -1;
        if (high < 0 || low < 0) {
            throw UsageError{u"-value takes bytes in hexadecimal, two digits each"};
        }
        bytes.push_back(static_cast<signed char>(high * 16 + low));
    }
    return bytes;
}

String bytesOf(const RegistryKey& key, const String& name)
{
    std::vector<signed char> bytes;
    for (std::int32_t room = -1, size = 0; size > room;) {
        room = size;
        size = key.getValue(name, bytes.data(), room);
        bytes.resize(static_cast<std::size_t>(size));
    }
    String text;
    for (const signed char byte : bytes) {
        const auto number = static_cast<unsigned char>(byte);
        text.append(u"0123456789abcdef"[number >> 4]).append(u"0123456789abcdef"[number & 0xF]);
    }
    return text;
}

String wideNumberOf(const RegistryKey& key, const String& name)
{
    std::uint64_t number = 0;
    std::uint32_t size = sizeof number;
    orv::throwIfFailed(ORVRegistryGetValue(key.getHKEY(), key.getKey(true).getData(),
                                           name.getData(), nullptr, &number, &size));
    return String::valueOf(number);
}

void setString(const RegistryKey& key, const String& name, const String& text)
{
    key.setValue(name, text);
}

void setUint32(const RegistryKey& key, const String& name, const String& text)
{
    key.setValue(name, static_cast<std::uint32_t>(toNumber(text, UINT32_MAX)));
}

void setUint64(const RegistryKey& key, const String& name, const String& text)
{
    key.setValue(name, toNumber(text, UINT64_MAX));
}

void setBytes(const RegistryKey& key, const String& name, const String& text)
{
    const std::vector<signed char> bytes = toBytes(text);
    key.setValue(name, bytes.data(), static_cast<std::int32_t>(bytes.size()));
}

String getString(const RegistryKey& key, const String& name)
{
    return key.getValueString(name);
}

String getUint32(const RegistryKey& key, const String& name)
{
    return String::valueOf(key.getValueUINT32(name));
}

/// The types, by their numbers.
struct TypeRow {
    const char16_t* name;
    void (*set)(const RegistryKey& key, const String& name, const String& text);
    String (*get)(const RegistryKey& key, const String& name);
};
constexpr TypeRow types[] = {
    {u"string", &setString, &getString},
    {u"uint32", &setUint32, &getUint32},
    {u"uint64", &setUint64, &wideNumberOf},
    {u"binary", &setBytes, &bytesOf},
};

String optional(const Arguments& arguments, const char16_t* option)
{
    return arguments.has(option) ? arguments.text(option) : String();
}

void get(const RegistryKey& key, const Arguments& arguments, PrintWriter& out)
{
    const String name = optional(arguments, u"name");
    out.println(types[key.getValueType(name)].get(key, name));
}

void set(const RegistryKey& key, const Arguments& arguments, PrintWriter&)
{
    const String type = arguments.has(u"type") ? arguments.text(u"type") : String(types[0].name);
    const auto* const row = std::find_if(std::begin(types), std::end(types),
                                         [&](const TypeRow& each) { return type == each.name; });
    if (row == std::end(types)) throw UsageError{u"there is no type \"" + type + u"\""};
    row->set(key, optional(arguments, u"name"), arguments.text(u"value"));
}

void remove(const RegistryKey& key, const Arguments& arguments, PrintWriter&)
{
    if (arguments.has(u"name")) {
        key.deleteValue(arguments.text(u"name"));
    } else {
        key.remove();
    }
}

void list(const RegistryKey& key, const Arguments&, PrintWriter& out)
{
    for (const auto keys = key.getSubkeyIterator(); keys->hasNext();) {
        out.println(keys->next()->getKeyName() + u"\\");
    }
    for (const auto values = key.getValueIterator(); values->hasNext();) {
        const String name = *values->next();
        const TypeRow& row = types[key.getValueType(name)];
        out.println(name + u"\t" + row.name + u"\t" + row.get(key, name));
    }
}

struct OperationRow {
    const char16_t* name;
    void (*run)(const RegistryKey& key, const Arguments& arguments, PrintWriter& out);
};
constexpr OperationRow operations[] = {
    {u"get", &get}, {u"set", &set}, {u"delete", &remove}, {u"list", &list}};

RegistryKey keyOf(const Arguments& arguments)
{
    const String path = arguments.text(u"key");
    try {
        return RegistryKey(path);
    } catch (const orv::Exception&) {
        throw UsageError{u"-key=" + path + u" does not begin with a root, as ORV_HKEY_USER"};
    }
}

void runRegistry(const Arguments& arguments, PrintWriter& out)
{
    const String name = arguments.word(0, u"the operation");
    for (const OperationRow& operation : operations) {
        if (name == operation.name) return operation.run(keyOf(arguments), arguments, out);
    }
    throw UsageError{u"there is no operation \"" + name + u"\""};
}

constexpr const char16_t* options[] = {u"key", u"name", u"type", u"value"};

} // namespace

const Command registry = {
    u"registry",
    u"keys and values of the configuration store",
    u" get|set|delete|list -key=PATH [-name=NAME] [-type=TYPE] [-value=TEXT]\n\n"
    u"Prints, sets or deletes a value, without -name the default value of the key; delete without\n"
    u"-name deletes the key with all below it. list prints the subkeys, each with a backslash, "
    u"then\n"
    u"the values as name, type and content, divided by tabs.\n\n"
    u"  -key   begins with ORV_HKEY_USER, ORV_HKEY_CONFIG or ORV_HKEY_CLASSES; both slashes "
    u"divide\n"
    u"  -type  string (when left out), uint32, uint64, or binary: bytes in hexadecimal",
    options,
    1,
    &runRegistry};

} // namespace tool
