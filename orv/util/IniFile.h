#pragma once

#include "orv/Reference.h"
#include "orv/String.h"

#include <cstdint>
#include <map>
#include <memory>
#include <string_view>
#include <vector>

namespace orv::ipc {
class Semaphore;
} // namespace orv::ipc

namespace orv::util {

/// A configuration file: named sets of keys with values, shared with other processes.
///
///     IniFile file(u"/etc/app.ini", "app.ini lock", 0);
///     file.AddKey(u"network", u"port", u"8080", true);      // saves at once
///     char16_t port[16];
///     if (file.GetValue(u"network", u"port", port, 16) == S_OK) { ... }
///
/// Names of sets and keys are found without regard to case (ORVToLowerW()) and keep the spelling
/// with which they came first; values are kept as they are. Names with backslashes are names like
/// any other. Null stands for the empty text.
///
/// # The file
///
/// Lines end in a line feed; the longest have 510 bytes with it, and each further piece of a longer
/// one is read as a line of its own. The text is in the default encoding; from a byte order mark
/// (EF BB BF at the start of any line) on it is UTF-8. A NUL byte ends its line.
///
/// | Line | Meaning |
/// |---|---|
/// | begins with `#`, `;` or `:` | a comment |
/// | empty, or begins with white space | skipped, whatever follows |
/// | `[name]` | begins a set; the name reaches to the last `]`, blanks and all |
/// | `key=value` | a key of the set; blanks and tabs around both do not count |
///
/// - The last character of a key line is dropped as its line feed: a file should end in one.
/// - A line with neither form ends the reading: what follows it is ignored, and gone with the next
///   save. A `[` line without `]` also empties the set before it.
/// - Keys above the first set are dropped. Of a set that occurs twice the last occurrence counts,
///   of a key that occurs twice in it the last value. A last set `[]` is dropped.
///
/// A save writes the file anew: sorted by name, in the default encoding, without comments, a blank
/// line behind each set. What the form cannot hold is not looked for: names of sets are cut to 259
/// bytes, keys and values to 254, at a whole character; characters that the encoding lacks become
/// "?"; line feeds, blanks at the ends, "=" in a key or "#" before it come back as the form has it.
///
/// # Sharing
///
/// Each operation first looks whether the file is newer than the object knows, and reads it again
/// if so; the first operation always does. The semaphore, if one was named, is held over each
/// operation: across the processes and threads that name the same one.
///
/// The age of the file counts in whole seconds. An object that is made for each change therefore
/// loses nothing under the semaphore, for it always reads what is there. One that lives on does not
/// see a change that another process makes within the second of the last change it knows of, and
/// its own next change overwrites that one: of 4,000 changes that four such processes made as fast
/// as they could, some 2,900 were lost. Where several write, make an object for each change.
///
/// # Faults
///
/// - A save empties the file in place and writes it by one call. A process that is killed between
///   the two leaves it empty, one that is killed in the call leaves its beginning; of 500 kills of
///   a process that did nothing but save 200 kB, 338 left it empty and 10 cut. Keep a copy of what
///   matters.
/// - A full disk leaves what fitted, a file that may not be written stays as it is. The result is 0
///   all the same: the object keeps everything, and the next save tries again.
/// - A file that is gone or cannot be looked at leaves the object as it is, and the next save makes
///   it again. One that is there but cannot be opened counts as empty.
/// - A failure to read throws ResultException, bytes that are no text in their encoding throw
///   InvalidCharacterException, an unknown default encoding UnknownEncodingException. The object
///   then holds what it held, and nothing is written.
/// - Without memory an operation throws OutOfMemoryException; the object may then have the change
///   that the file has not.
/// - A name of more than 259 bytes names no file.
/// - A process that dies with the semaphore in its hands gives it back within a second.
///
/// Copies share the semaphore and have their own content from there on. Threads: any with a
/// semaphore, one at a time without. A failing semaphore throws ResultException.
class ORV_API IniFile : public Object {
public:
    /// Opens the semaphore, unless the name is null, and reads the file. Where that cannot be
    /// opened the object is empty; with `mustExist` other than 0 IniFileException of
    /// TYPE_LOAD_FAILED is thrown instead.
    IniFile(const char16_t* fileName, const char* semaphoreName, std::int16_t mustExist);
    IniFile(const IniFile& other);
    IniFile& operator=(const IniFile& other);
    ~IniFile() noexcept(false) override;

    /// Sets a value and saves, making set and key where they are missing. 0x800700B7 for a key that
    /// is there while `overwrite` is false; then nothing is written.
    Result AddKey(const char16_t* setName, const char16_t* keyName, const char16_t* value,
                  bool overwrite);

    /// Removes a key and saves; its set stays, perhaps empty. 0x80070002 for a key that is not
    /// there; then nothing is written.
    Result DeleteKey(const char16_t* setName, const char16_t* keyName);

    /// Removes a set with its keys and saves, also where there is no such set. Always 0.
    Result DeleteSet(const char16_t* setName);

    /// Copies a value with its terminator into `bufferSize` units. 0x80070002 for a key that is not
    /// there, which leaves the buffer alone. 0x80004009 where the room is too small: the buffer is
    /// then full of the beginning, without a terminator.
    Result GetValue(const char16_t* setName, const char16_t* keyName, char16_t* buffer,
                    std::uint64_t bufferSize);

private:
    friend class IniFileSetIterator;
    friend class IniFileKeyIterator;
    class Hold;
    class Operation;
    class Reader;
    class Text;
    class Index;

    /// The order of String::regionCompare() over whole names, case ignored.
    struct NameOrder {
        using is_transparent = void;
        bool operator()(const String& a, const String& b) const { return isLess(view(a), view(b)); }
        bool operator()(const String& a, std::u16string_view b) const { return isLess(view(a), b); }
        bool operator()(std::u16string_view a, const String& b) const { return isLess(a, view(b)); }

        static std::u16string_view view(const String& name)
        {
            // A String of our own needs no virtual call.
            return {name.String::getData(), static_cast<std::size_t>(name.String::getLength())};
        }
        static bool isLess(std::u16string_view a, std::u16string_view b)
        {
            const std::int32_t order = compare(a, b);
            return order != 0 ? order < 0 : a.size() < b.size();
        }
        static bool isSame(std::u16string_view a, std::u16string_view b)
        {
            return a.size() == b.size() && compare(a, b) == 0;
        }
        static std::int32_t compare(std::u16string_view a, std::u16string_view b);
    };
    using Keys = std::map<String, String, NameOrder>;
    using Sets = std::map<String, Keys, NameOrder>;

    std::int32_t load();
    std::int32_t WriteToFile(const char16_t* fileName);
    void checkAndUpdate();
    const String* findValue(std::u16string_view setName, std::u16string_view keyName);
    bool KeyExists(std::u16string_view setName, std::u16string_view keyName);
    bool SetExists(const String& setName) const;
    std::vector<String> ListSets() const;
    std::vector<String> ListKeys(const String& setName) const;
    std::vector<String> ListSubsets(const String& setName) const;
    void internalDeleteSet(const String& setName);
    static bool isBelow(const String& setName, const String& prefix);
    void dropIndex();

    Reference<ipc::Semaphore> m_semaphore;
    String m_fileName;
    Sets m_sets;
    std::int64_t m_lastModified = 0; ///< seconds
    std::unique_ptr<Index> m_index;  ///< of the present keys, null before it is worth having
    std::int32_t m_searches = 0;     ///< since the keys changed
};

} // namespace orv::util
