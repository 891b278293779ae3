#include "velweb/velweb_service.h"

#include <filesystem>
#include <system_error>

#include "core/file.h"
#include "tables/tables.h"
#include "velweb/flight_page.h"
#include "velweb/text_scan.h"
#include "web/form_encoder.h"

namespace vel {
namespace {

constexpr const char* kKmlType = "application/vnd.google-earth.kml+xml";

WebResponse notAllowed(std::string allow) {
  WebResponse response = plainResponse(405);
  response.allow = std::move(allow);
  return response;
}

std::string_view pathOf(const WebRequest& request) {
  const std::string_view target = request.target;
  return target.substr(0, target.find('?'));
}

// True for the name with or without a port.
bool isHostNamed(std::string_view hostHeader, std::string_view name) {
  constexpr std::size_t kLongestPort = 5;
  if (!equalIgnoringCase(hostHeader.substr(0, name.size()), name)) return false;
  TextScan scan(hostHeader.substr(name.size()));
  if (scan.atEnd()) return true;
  if (!scan.take(":")) return false;
  const std::size_t digits = scan.countDigits();
  return digits > 0 && digits <= kLongestPort && digits == scan.rest().size();
}

}  // namespace

bool Conversion::add(std::string_view piece) {
  size_ += piece.size();
  if (size_ > kLargestPost) return false;
  track_.add(field_.decode(piece));
  return true;
}

WebResponse Conversion::finish() {
  if (size_ > kLargestPost) return plainResponse(413);
  if (!field_.found()) return plainResponse(400);
  track_.add(field_.finish());
  return {200, kKmlType, kmlDocument(track_.finish())};
}

std::optional<WebResponse> VelwebService::refusal(const WebRequest& request) const {
  if (isLoopbackAddress(host_) && !isOwnHost(request.host)) return plainResponse(403);
  std::error_code failure;
  if (!std::filesystem::is_directory(folders_.base, failure)) return plainResponse(503);
  if (isConversion(request)) {
    if (request.method != "POST") return notAllowed("POST");
    return std::nullopt;
  }
  if (pathOf(request) != "/") return plainResponse(404);
  if (request.method != "GET" && request.method != "HEAD") return notAllowed("GET, HEAD");
  return std::nullopt;
}

bool VelwebService::isConversion(const WebRequest& request) {
  return pathOf(request) == kConversionPath;
}

std::optional<WebResponse> VelwebService::answer(const WebRequest& request) const {
  if (auto refused = refusal(request)) return refused;
  if (isConversion(request)) return std::nullopt;
  const std::string_view target = request.target;
  const std::size_t mark = target.find('?');
  std::string_view query;
  if (mark != std::string_view::npos) query = target.substr(mark + 1);
  FormFieldDecoder field("F");
  std::string flight = field.decode(query);
  flight += field.finish();
  return WebResponse{200, "text/html; charset=utf-8",
                     flightPage(Tables(folders_, encoding()), flight)};
}

bool VelwebService::isOwnHost(std::string_view hostHeader) const {
  if (isLoopbackHost(hostHeader)) return true;
  const bool isVersion6 = host_.find(':') != std::string::npos;
  return isHostNamed(hostHeader, isVersion6 ? "[" + host_ + "]" : host_);
}

Encoding VelwebService::encoding() const {
  // One for each request: an Encoding belongs to one thread.
  return textEncoding(encodingName_).value();
}

bool isLoopbackHost(std::string_view hostHeader) {
  return isHostNamed(hostHeader, "127.0.0.1") || isHostNamed(hostHeader, "[::1]") ||
         isHostNamed(hostHeader, "localhost");
}

bool isLoopbackAddress(std::string_view host) {
  return host == "::1" || host.starts_with("127.") || equalIgnoringCase(host, "localhost");
}

WebResponse plainResponse(int status) {
  const auto text = [status] {
    switch (status) {
      case 400:
        return "Bad request. 要求が正しくありません。\n";
      case 403:
        return "Forbidden. このホスト名では利用できません。\n";
      case 404:
        return "Not found. ページがありません。\n";
      case 405:
        return "Method not allowed. この方法では利用できません。\n";
      case 503:
        return "The base folder is missing. データのフォルダがありません。\n";
      case 414:
        return "The address is too long. アドレスが長すぎます。\n";
      case 413:
        return "Too large. データが大きすぎます。\n";
      default:
        return "Error. エラーです。\n";
    }
  };
  return {status, "text/plain; charset=utf-8", text()};
}

}  // namespace vel
