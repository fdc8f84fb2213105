// ODBC's own headers, in the order in which they need one another.
#pragma once

#include <sql.h>
#include <sqlext.h>
#include <sqlucode.h>

static_assert(sizeof(SQLWCHAR) == sizeof(char16_t));
