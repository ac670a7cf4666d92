#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace npar_host {

/// A list of fields as a person writes it becomes words for SplitWords: a name in double quotes
/// gets a backslash before each of its characters.
[[nodiscard]] std::string EscapeQuoted(std::string_view list);

/// The fields that an item of a list names, in the order of the columns: the column of that name;
/// those from the first to the last of a range "x1-x20"; those that fit a pattern, "score_*", where
/// "*" is any text and "?" any character. Otherwise the name alone, for others to refuse.
[[nodiscard]] std::vector<std::string> ExpandField(std::string_view item,
                                                   const std::vector<std::string>& columns);

/// A text as a shell takes it, and the name of a field as a list of fields in a shell.
[[nodiscard]] std::string ShellWord(const std::string& text);
[[nodiscard]] std::string FieldArgument(const std::string& name);

/// What to say of a header of one column that looks like several: "the header is one field ...";
/// empty for others.
[[nodiscard]] std::string SeparatorHint(const std::vector<std::string>& columns);

/// All fields of a list, those of ranges and patterns once.
[[nodiscard]] std::vector<std::string> ExpandFields(const std::vector<std::string>& items,
                                                    const std::vector<std::string>& columns);

}  // namespace npar_host
