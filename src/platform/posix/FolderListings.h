/// What stands in a folder, sorted, and kept while the folder provably hasn't changed. Private to the
/// Linux half of the platform layer.
#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>
#include <sys/stat.h>
#include <vector>

namespace Platform::Posix {

/// The names in a folder in the order of listings, without `.` and `..`, and without names that hold a backslash, which
/// no path can say.
class Listing {
public:
    /// What the folder itself says of an entry, without a look at the entry.
    enum class Kind : unsigned char { File, Folder, Unknown };

    /// Leaves a name out that no path can say.
    void Add(std::string_view name, Kind kind);
    /// Ends the reading; `complete` if it came to the end of the folder.
    void Finish(bool complete);

    bool IsComplete() const { return complete; }
    bool HasLeftOut() const { return leftOut; }

    std::size_t Count() const { return items.size(); }
    std::string_view Name(std::size_t i) const
    {
        return std::string_view(text.data() + items[i].offset, items[i].length);
    }
    Kind KindOf(std::size_t i) const { return items[i].kind; }
    std::size_t Bytes() const { return text.capacity() + items.capacity() * sizeof(Item); }

    /// The name as stored: exactly this one, else the first that differs by case alone, empty if there is neither.
    std::string Find(std::string_view name) const;

private:
    struct Item {
        std::size_t offset;
        unsigned short length;
        Kind kind;
    };

    std::vector<Item> items;
    std::string text;
    bool complete = false;
    bool leftOut = false;
};

/// The listing of a folder given by its native name, empty and incomplete if it can't be read. `info`, if the caller
/// has looked at the folder just now, saves a look here.
std::shared_ptr<Listing const> ListFolder(std::string const &folder, struct stat const *info = nullptr);

/// How many folders have been read since the library came up. For tests.
long long ListingsTaken();

} // namespace Platform::Posix
