// Web addresses, then a host, a path and a user name that are set: what was put together comes
// apart in the same parts.

#include "fuzz/fuzz.h"
#include "suite/url.h"

namespace quillan {
namespace {

void Check(fuzz::Input input) {
  URL url;
  url.SetURL(input.Piece());
  const bool parsed = url.LastError().empty();
  if (!input.Rest().empty()) url.SetHostName(input.Piece());
  if (!input.Rest().empty()) url.SetURLPath(input.Piece());
  if (!input.Rest().empty()) url.SetUserName(input.Piece());
  const std::string built = url.GetURL();
  fuzz::Expect(built.empty() || built.find_first_of(" \r\n\t\"<>") == std::string::npos ||
                   built.find_first_of("?#") != std::string::npos,
               "no unsafe characters before the query");
  // Escapes may make a part too long to be split again.
  if (!parsed || built.empty() || built.size() > kUrlPartLimit) return;
  URL again;
  again.SetURL(built);
  fuzz::ExpectSame(again.LastError(), std::string(), "a built address can be split");
  fuzz::ExpectSame(again.GetURL(), built, "it is built the same again");
  fuzz::ExpectSame(again.Scheme(), url.Scheme(), "the scheme");
  // Port 0 is not written.
  fuzz::Expect(url.Port() == 0 || again.Port() == url.Port(), "the port");
}

}  // namespace
}  // namespace quillan

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  quillan::Check({data, size});
  return 0;
}
