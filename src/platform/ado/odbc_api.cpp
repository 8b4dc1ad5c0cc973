#include "platform/ado/odbc_api.h"

#include <array>
#include <vector>

#include "platform/ado/error.h"
#include "platform/text/ascii.h"
#include "platform/text/encoding.h"

namespace quillan::ado {
namespace {

// ODBC's functions for bytes, and how their strings are written.
struct Bytes {
  using Unit = SQLCHAR;
  static constexpr bool kSqlite = true;
  static constexpr SQLSMALLINT kTextType = SQL_C_CHAR;
  static constexpr auto* kDriverConnect = &SQLDriverConnect;
  static constexpr auto* kExecDirect = &SQLExecDirect;
  static constexpr auto* kPrimaryKeys = &SQLPrimaryKeys;
  static constexpr auto* kDescribeCol = &SQLDescribeCol;
  static constexpr auto* kGetInfo = &SQLGetInfo;
  static constexpr auto* kGetDiagRec = &SQLGetDiagRec;

  static std::vector<Unit> Encode(std::string_view text) { return {text.begin(), text.end()}; }
  static std::string Decode(const Unit* text) { return reinterpret_cast<const char*>(text); }
};

// The Unicode functions.
struct Utf16 {
  using Unit = SQLWCHAR;
  static constexpr bool kSqlite = false;
  static constexpr SQLSMALLINT kTextType = SQL_C_WCHAR;
  static constexpr auto* kDriverConnect = &SQLDriverConnectW;
  static constexpr auto* kExecDirect = &SQLExecDirectW;
  static constexpr auto* kPrimaryKeys = &SQLPrimaryKeysW;
  static constexpr auto* kDescribeCol = &SQLDescribeColW;
  static constexpr auto* kGetInfo = &SQLGetInfoW;
  static constexpr auto* kGetDiagRec = &SQLGetDiagRecW;

  static std::vector<Unit> Encode(std::string_view text) {
    const std::u16string units = text::Utf8ToUtf16(text);
    return {units.begin(), units.end()};
  }
  static std::string Decode(const Unit* text) {
    return text::Utf16ToUtf8(reinterpret_cast<const char16_t*>(text));
  }
};

template <typename Form>
class ApiIn final : public OdbcApi {
 public:
  bool IsSqlite() const override { return Form::kSqlite; }
  SQLSMALLINT TextType() const override { return Form::kTextType; }

  std::string TextParameter(std::string_view text) const override {
    const std::vector<Unit> units = Form::Encode(text);
    return {reinterpret_cast<const char*>(units.data()), units.size() * sizeof(Unit)};
  }

  SQLRETURN DriverConnect(SQLHDBC connection, std::string_view text) const override {
    std::vector<Unit> units = Form::Encode(text);
    return Form::kDriverConnect(connection, nullptr, units.data(), Length(units), nullptr, 0,
                                nullptr, SQL_DRIVER_NOPROMPT);
  }

  SQLRETURN ExecDirect(SQLHSTMT statement, std::string_view text) const override {
    std::vector<Unit> units = Form::Encode(text);
    return Form::kExecDirect(statement, units.data(), static_cast<SQLINTEGER>(units.size()));
  }

  SQLRETURN PrimaryKeys(SQLHSTMT statement, std::string_view catalog, std::string_view schema,
                        std::string_view table) const override {
    std::vector<Unit> names[] = {Form::Encode(catalog), Form::Encode(schema), Form::Encode(table)};
    const auto pointer = [](std::vector<Unit>& name) {
      return name.empty() ? nullptr : name.data();
    };
    return Form::kPrimaryKeys(statement, pointer(names[0]), Length(names[0]), pointer(names[1]),
                              Length(names[1]), pointer(names[2]), Length(names[2]));
  }

  SQLRETURN DescribeCol(SQLHSTMT statement, SQLUSMALLINT number,
                        OdbcColumn& column) const override {
    std::array<Unit, 1024> name{};
    SQLSMALLINT length = 0;
    SQLSMALLINT nullable = 0;
    const SQLRETURN result =
        Form::kDescribeCol(statement, number, name.data(), name.size(), &length, &column.type,
                           &column.size, &column.scale, &nullable);
    column.name = Form::Decode(name.data());
    return result;
  }

  std::string GetInfo(SQLHDBC connection, SQLUSMALLINT type) const override {
    std::array<Unit, 512> text{};
    SQLSMALLINT bytes = 0;
    if (!SQL_SUCCEEDED(
            Form::kGetInfo(connection, type, text.data(), sizeof text - sizeof(Unit), &bytes))) {
      return {};
    }
    return Form::Decode(text.data());
  }

  std::optional<OdbcDiagnostic> GetDiagRec(const OdbcHandle& handle,
                                           SQLSMALLINT number) const override {
    OdbcDiagnostic diagnostic;
    std::array<Unit, SQL_SQLSTATE_SIZE + 1> state{};
    std::vector<Unit> text(8192);
    SQLSMALLINT length = 0;
    if (!SQL_SUCCEEDED(Form::kGetDiagRec(handle.type(), handle.get(), number, state.data(),
                                         &diagnostic.number, text.data(),
                                         static_cast<SQLSMALLINT>(text.size()), &length))) {
      return std::nullopt;
    }
    diagnostic.state = Form::Decode(state.data());
    diagnostic.text = Form::Decode(text.data());
    return diagnostic;
  }

 private:
  using Unit = typename Form::Unit;

  static SQLSMALLINT Length(const std::vector<Unit>& text) {
    return static_cast<SQLSMALLINT>(text.size());
  }
};

}  // namespace

OdbcHandle::OdbcHandle(SQLSMALLINT type, const OdbcHandle* parent) : type_(type) {
  const SQLHANDLE owner = parent != nullptr ? parent->get() : nullptr;
  if (SQL_SUCCEEDED(SQLAllocHandle(type, owner, &handle_))) return;
  handle_ = nullptr;
  throw Error(0, "HY001", "ODBC could not allocate a handle.");
}

OdbcHandle::~OdbcHandle() {
  if (handle_ != nullptr) SQLFreeHandle(type_, handle_);
}

const OdbcApi& OdbcApi::For(std::string_view name) {
  static const ApiIn<Bytes> bytes;
  static const ApiIn<Utf16> utf16;
  if (text::ToUpperAscii(name).find("SQLITE") != std::string::npos) return bytes;
  return utf16;
}

}  // namespace quillan::ado
