// The names of a table's columns.
#pragma once

#include <string>
#include <vector>

namespace NWorkbook {

// Makes names of what stands in the columns of a table's first row, none empty and no two the same, case of
// ASCII letters aside. A column's text is its name, unless it is empty or an earlier column has it. Where it
// is empty, the name is F and the column's number from 1 on. A name that is taken gets the first number
// behind it, from 1 on, that makes it one that no column has: A, A, A1 become A, A2, A1.
std::vector<std::u16string> NameColumns(std::vector<std::u16string> texts);

}  // namespace NWorkbook
