#include "data/import/column_names.h"

#include <algorithm>
#include <charconv>

#include "data/word_list.h"

namespace {

struct Range {
    Index first, last; // columns from 0; first above last: none
};

bool takeColumnNumber(std::string_view& text, Index& column) {
    if (!text.starts_with('#')) return false;
    const auto [end, error] = std::from_chars(text.data() + 1, text.data() + text.size(), column);
    if (error != std::errc() || column < 1) return false;
    text.remove_prefix(static_cast<std::size_t>(end - text.data()));
    --column;
    return true;
}

// The columns that a text means: "#3", "#3-#7", or all of that name.
Range findRange(std::string_view text, const ColumnNames& names) {
    for (Index j = 0; j < names.count; ++j) {
        if (names[j] == text) return {j, j};
    }
    Range range = {0, -1};
    Index first = 0;
    if (!takeColumnNumber(text, first)) return range;
    Index last = first;
    if (text.starts_with('-')) {
        text.remove_prefix(1);
        if (!takeColumnNumber(text, last)) return range;
    }
    if (!text.empty() || last < first || last >= names.count) return range;
    return {first, last};
}

// Calls `use` for the columns of lists of names.
template <class Use>
ErrorCode eachNamed(const Block<const char*>& lists, ImportChoice choice, const ColumnNames& names,
                    ImportMessages& messages, Use use) {
    for (const char* list : lists) {
        const bool known = forEachNamed(list, [&](std::string_view text) {
            const Range range = findRange(text, names);
            if (range.first > range.last) {
                const Shown name = shown(text, 200);
                messages.refuse("%s: there is no column '%.*s'", messages.ask(choice), name.length,
                                name.text);
                return false;
            }
            for (Index j = range.first; j <= range.last; ++j) use(j);
            return true;
        });
        if (!known) return illegalData;
    }
    return success;
}

} // namespace

ErrorCode takeNames(const ImportRecord* header, const ImportForm& form, ColumnNames& names) {
    names.count = form.width;
    Index characters = 0;
    const Index shift = form.isCornerless ? 1 : 0;
    for (Index k = 0; header != nullptr && k < header->count; ++k) {
        characters += std::ssize(header->cells[k].text);
    }
    if (names.characters.allocate(characters + 12 * form.width) != success ||
        names.ends.allocate(form.width) != success) {
        return outOfMemory;
    }
    char* at = names.characters.data();
    for (Index j = 0; j < form.width; ++j) {
        if (header == nullptr) {
            *at++ = 'V';
            at = std::to_chars(at, at + 11, j + 1).ptr;
        } else if (j >= shift && j - shift < header->count) {
            const std::string_view name = header->cells[j - shift].text;
            at = std::copy(name.begin(), name.end(), at);
        }
        names.ends[j] = at - names.characters.data();
    }
    return success;
}

ErrorCode takeWishes(const ImportOptions& options, const ColumnNames& names, Block<ColumnWish>& wishes,
                     ImportMessages& messages) {
    if (wishes.allocate(names.count) != success) return outOfMemory;
    for (ColumnWish& wish : wishes) wish.unkept = options.keeps.size() > 0;
    ErrorCode code = eachNamed(options.keeps, ImportChoice::keeps, names, messages,
                               [&](Index j) { wishes[j].unkept = false; });
    if (code == success) {
        code = eachNamed(options.drops, ImportChoice::drops, names, messages,
                         [&](Index j) { wishes[j].dropped = true; });
    }
    if (code == success) {
        code = eachNamed(options.categories, ImportChoice::categories, names, messages,
                         [&](Index j) { wishes[j].categories = true; });
    }
    if (code != success || options.labels != LabelColumn::named) return code;
    const Range range = findRange(options.labelName, names);
    if (range.first != range.last) {
        const Shown name = shown(options.labelName, 200);
        messages.refuse("--labels: there is no column '%.*s'", name.length, name.text);
        return illegalData;
    }
    wishes[range.first].labels = true;
    return success;
}
