#pragma once

#include "platform/ado/driver.h"
#include "platform/ado/odbc_statement.h"
#include "platform/ado/row_store.h"

namespace quillan::ado {

/// Reads all rows of the result on which `statement` stands: in blocks of many rows a call, except
/// where a column is without limit in its length. Bits and integers come as integers,
/// other numbers as floating-point ones, date-times as "2007-06-01 12:00:00" (with the fraction of
/// a second in as many digits as the column has, unless it is 0), everything else as text, among it
/// integers of more than 18 digits. Afterwards the statement can only move on
/// to its next result. Throws `Error`.
RowStore ReadRows(const OdbcStatement& statement);

/// The same in blocks of about kBlockRows rows, until `on_block` returns false.
void ReadRowsInBlocks(const OdbcStatement& statement, const BlockHandler& on_block);

}  // namespace quillan::ado
