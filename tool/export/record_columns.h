// The records of a log as tables: which columns each has. The keys are those of the JSON Lines.
#pragma once

#include <span>
#include <string_view>
#include <vector>

namespace marvane::tool {

struct RecordTable
{
    std::string_view Kind;    ///< of the record
    std::string_view Name;    ///< of the table
    std::string_view Columns; ///< separated by blanks; # before those that hold whole numbers
};

/// A column of a table.
struct RecordColumn
{
    std::string_view Name;
    bool IsNumber = false;
};

/// The columns of a table, in their order; those that every table has included.
std::vector<RecordColumn> ColumnsOf(const RecordTable& table);

/// All tables.
std::span<const RecordTable> RecordTables();

/// The table of a kind of record; null if there is none.
const RecordTable* TableOfKind(std::string_view kind);
/// The table of that name; null if there is none.
const RecordTable* TableOfName(std::string_view name);

} // namespace marvane::tool
