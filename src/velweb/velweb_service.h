#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

#include "core/folders.h"
#include "velweb/form_decoder.h"
#include "velweb/kml.h"

namespace vel {

/// What the companion service looks at before a request's body arrives.
struct WebRequest {
  std::string method;
  std::string target;  ///< path and query as sent
  std::string host;    ///< the Host header, empty when there is none
};

struct WebResponse {
  int status = 200;
  std::string contentType;
  std::string body;
  std::string allow = {};  ///< the Allow header of a 405
};

/// A posted form with up to so many bytes is converted.
constexpr std::size_t kLargestPost = std::size_t{64} << 20;

/// One conversion of a posted raw log: fed with the form's bytes as they
/// arrive, it keeps the positions only.
class Conversion {
 public:
  explicit Conversion(Encoding encoding) : field_("dat"), track_(std::move(encoding)) {}

  /// False once the form is larger than kLargestPost; the rest may be dropped.
  bool add(std::string_view piece);

  /// 200 with the KML document; 413 for too large a form, 400 for one without
  /// the field `dat`.
  [[nodiscard]] WebResponse finish();

 private:
  FormFieldDecoder field_;
  TrackReader track_;
  std::size_t size_ = 0;
};

/// The companion service without its sockets. It keeps nothing between two
/// requests, writes nothing, and may be used by several threads at once.
class VelwebService {
 public:
  /// Serves on `host`. Where that is an address of this computer alone, only
  /// requests whose Host is that address or another loopback name are answered,
  /// so that no page elsewhere reaches the service under a name of its own.
  VelwebService(Folders folders, std::string encodingName, std::string host)
      : folders_(std::move(folders)),
        encodingName_(std::move(encodingName)),
        host_(std::move(host)) {}

  /// The answer to a request that is refused, as far as its header tells: 503
  /// without the base folder, 403 for another Host, 404 and 405.
  [[nodiscard]] std::optional<WebResponse> refusal(const WebRequest& request) const;

  /// True when a request that is not refused is a conversion, whose body is to
  /// be read (see startConversion).
  [[nodiscard]] static bool isConversion(const WebRequest& request);

  /// The answer to a request; nothing for a conversion. A page may take seconds
  /// where the logs are large.
  [[nodiscard]] std::optional<WebResponse> answer(const WebRequest& request) const;

  [[nodiscard]] Conversion startConversion() const { return Conversion(encoding()); }

 private:
  [[nodiscard]] Encoding encoding() const;
  [[nodiscard]] bool isOwnHost(std::string_view hostHeader) const;

  Folders folders_;
  std::string encodingName_;
  std::string host_;
};

/// True for 127.0.0.1, localhost and [::1], each with or without a port.
[[nodiscard]] bool isLoopbackHost(std::string_view hostHeader);

/// True when a server bound to that host is reachable from this computer only.
[[nodiscard]] bool isLoopbackAddress(std::string_view host);

/// A short plain text for a status.
[[nodiscard]] WebResponse plainResponse(int status);

}  // namespace vel
