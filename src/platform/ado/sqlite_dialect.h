#pragma once

#include <string>
#include <string_view>

namespace quillan::ado {

/// `statement`, Transact-SQL, as SQLite understands it. Changes only what SQLite lacks, token by
/// token and never inside a literal, a quoted name or a comment:
///
/// - `select top n …` becomes `select … limit n`;
/// - `exec tbsp_netflowSetGlobalSetting 'name', 'value'` becomes an upsert into GlobalSettings;
/// - `if not exists (query) insert into t (c) values (v)` becomes `insert into t (c) select v where
///   not exists (query)`;
/// - `isnumeric(x)` becomes an expression that gives 1 for a number or a text that reads as one,
///   else 0;
/// - `N'…'` becomes `'…'`;
/// - `set transaction isolation level …` becomes the pragma of the same meaning.
///
/// Anything else, malformed text too, comes back unchanged for the engine to judge.
std::string TranslateToSqlite(std::string_view statement);

}  // namespace quillan::ado
