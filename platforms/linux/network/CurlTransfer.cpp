#include "platforms/linux/network/CurlTransfer.hpp"

#include <algorithm>

namespace mireth::platform {

namespace {

constexpr std::size_t maxBodyBytes = std::size_t{1024} * 1024;
// Informational answers have headers too, and a server may send them for ever.
constexpr std::size_t maxHeaderBytes = std::size_t{256} * 1024;

std::chrono::milliseconds clampedIdleTimeout(std::chrono::seconds timeout) {
    return std::clamp(timeout, std::chrono::seconds(1), std::chrono::seconds(24 * 3600));
}

bool sameName(std::string_view left, std::string_view right) {
    const CaseInsensitiveLess less;
    return !less(left, right) && !less(right, left);
}

std::string withoutBlanksAtEnd(std::string_view text) {
    return std::string(text.substr(0, text.find_last_not_of(" \t\r\n") + 1));
}

}  // namespace

CurlTransfer::CurlTransfer(HttpRequest request, const CurlSettings& settings)
    : request_(std::move(request)), idleTimeout_(clampedIdleTimeout(request_.idleTimeout)) {
    refusal_ = prepare(settings);
}

std::string CurlTransfer::prepare(const CurlSettings& settings) {
    if (!settings.refusal.empty()) {
        return settings.refusal;
    }
    auto url = checkUrl(request_.url, settings.allowInsecureHttp);
    if (!url) {
        return url.error();
    }
    url_ = std::move(*url);
    if (auto reason = checkMessage(request_); !reason.empty()) {
        return reason;
    }
    handle_.reset(curl_easy_init());
    if (!handle_) {
        return "no memory";
    }
    setSafetyRules(settings);
    setMessage();
    return setUpResult_ == CURLE_OK ? std::string() : curl_easy_strerror(setUpResult_);
}

/// Every option counts: a rule that could not be set stops the request.
template <class Value>
void CurlTransfer::set(CURLoption option, Value value) {
    if (const CURLcode code = curl_easy_setopt(handle_.get(), option, value); code != CURLE_OK) {
        setUpResult_ = code;
    }
}

void CurlTransfer::setSafetyRules(const CurlSettings& settings) {
    set(CURLOPT_PROTOCOLS_STR, "http,https");
    set(CURLOPT_REDIR_PROTOCOLS_STR, "https");
    set(CURLOPT_FOLLOWLOCATION, 0L);
    set(CURLOPT_SSL_VERIFYPEER, 1L);
    set(CURLOPT_SSL_VERIFYHOST, 2L);
    set(CURLOPT_SSLVERSION, static_cast<long>(CURL_SSLVERSION_TLSv1_2));
    set(CURLOPT_HTTP_VERSION, static_cast<long>(CURL_HTTP_VERSION_2TLS));
    set(CURLOPT_HTTP09_ALLOWED, 0L);
    // What the environment or the user's files say about proxies and passwords is meant for other programs.
    set(CURLOPT_PROXY, "");
    set(CURLOPT_NETRC, static_cast<long>(CURL_NETRC_IGNORED));
    set(CURLOPT_NOSIGNAL, 1L);
    // Ending a request must not wait for the name server.
    set(CURLOPT_QUICK_EXIT, 1L);
    set(CURLOPT_CONNECTTIMEOUT_MS, static_cast<long>(idleTimeout_.count()));
    if (!settings.authorities.empty()) {
        // Not copied: the settings outlive every transfer.
        curl_blob blob{.data = const_cast<char*>(settings.authorities.data()),
                       .len = settings.authorities.size(),
                       .flags = CURL_BLOB_NOCOPY};
        set(CURLOPT_CAINFO_BLOB, &blob);
    }
}

void CurlTransfer::setMessage() {
    set(CURLOPT_CURLU, url_.handle.get());
    set(CURLOPT_ERRORBUFFER, errorText_.data());
    set(CURLOPT_WRITEFUNCTION, &CurlTransfer::receiveBody);
    set(CURLOPT_WRITEDATA, static_cast<void*>(this));
    set(CURLOPT_HEADERFUNCTION, &CurlTransfer::receiveHeader);
    set(CURLOPT_HEADERDATA, static_cast<void*>(this));
    setMethodAndBody();
    setHeaders();
    resolveToLoopback();
}

void CurlTransfer::setMethodAndBody() {
    const std::string& method = request_.method;
    const bool expectsLength = method == "POST" || method == "PUT" || method == "PATCH";
    if (method == "HEAD") {
        set(CURLOPT_NOBODY, 1L);
    } else if (request_.body || expectsLength) {
        // Without a body these methods say so with a length of zero (RFC 9110, 8.6).
        set(CURLOPT_POST, 1L);
        set(CURLOPT_POSTFIELDS, request_.body ? request_.body->data() : "");
        set(CURLOPT_POSTFIELDSIZE_LARGE, static_cast<curl_off_t>(request_.body ? request_.body->size() : 0));
    } else {
        set(CURLOPT_HTTPGET, 1L);
    }
    if (method != "HEAD") {
        set(CURLOPT_CUSTOMREQUEST, method.c_str());
    }
}

void CurlTransfer::setHeaders() {
    for (const auto& [name, value] : request_.headers) {
        const bool isEmpty = value.find_first_not_of(" \t") == std::string::npos;
        std::string entry = name;
        entry += isEmpty ? ";" : ": ";
        append(headers_, entry.append(isEmpty ? "" : value));
    }
    // libcurl adds these by itself; nothing is sent that was not asked for, and no server is waited for
    // before the body goes out.
    for (const std::string name : {"Accept", "Content-Type", "Expect"}) {
        if (!hasHeader(name)) {
            append(headers_, name + ":");
        }
    }
    set(CURLOPT_HTTPHEADER, headers_.get());
}

void CurlTransfer::append(CurlList& list, const std::string& entry) {
    curl_slist* const longer = curl_slist_append(list.get(), entry.c_str());
    if (longer == nullptr) {
        setUpResult_ = CURLE_OUT_OF_MEMORY;
        return;
    }
    // Only the first entry makes a new head.
    if (!list) {
        list.reset(longer);
    }
}

bool CurlTransfer::hasHeader(std::string_view name) const {
    return std::ranges::any_of(request_.headers,
                               [name](const auto& header) { return sameName(header.first, name); });
}

void CurlTransfer::resolveToLoopback() {
    if (!isLocalhostName(url_.host)) {
        return;
    }
    // No name server is asked: whoever answers for "x.localhost" there could otherwise be sent plain http.
    append(addresses_, url_.host + ":" + url_.port + ":127.0.0.1,[::1]");
    set(CURLOPT_RESOLVE, addresses_.get());
}

std::size_t CurlTransfer::receiveBody(char* data, std::size_t size, std::size_t count, void* self) {
    auto& transfer = *static_cast<CurlTransfer*>(self);
    const std::size_t bytes = size * count;
    if (bytes > maxBodyBytes - transfer.body_.size()) {
        transfer.isTooLong_ = true;
        return CURL_WRITEFUNC_ERROR;
    }
    try {
        transfer.body_.append(data, bytes);
    } catch (...) {
        // Nothing may be thrown through libcurl's own frames.
        return CURL_WRITEFUNC_ERROR;
    }
    return bytes;
}

std::size_t CurlTransfer::receiveHeader(char* data, std::size_t size, std::size_t count, void* self) {
    auto& transfer = *static_cast<CurlTransfer*>(self);
    const std::string_view line(data, size * count);
    transfer.headerBytes_ += line.size();
    if (transfer.headerBytes_ > maxHeaderBytes) {
        transfer.isTooLong_ = true;
        return CURL_WRITEFUNC_ERROR;
    }
    if (line.starts_with("HTTP/")) {
        transfer.hasWholeHead_ = false;
    } else if (line == "\r\n" || line == "\n") {
        transfer.hasWholeHead_ = true;
    }
    return line.size();
}

void CurlTransfer::noteActivity(TimePoint now) {
    std::int64_t mark = 0;
    // Names looked up and connections made count like bytes: something has happened.
    for (const CURLINFO info : {CURLINFO_SIZE_UPLOAD_T, CURLINFO_SIZE_DOWNLOAD_T, CURLINFO_NAMELOOKUP_TIME_T,
                                CURLINFO_CONNECT_TIME_T, CURLINFO_APPCONNECT_TIME_T}) {
        curl_off_t value = 0;
        curl_easy_getinfo(handle_.get(), info, &value);
        mark += value;
    }
    for (const CURLINFO info : {CURLINFO_HEADER_SIZE, CURLINFO_REQUEST_SIZE}) {
        long value = 0;
        curl_easy_getinfo(handle_.get(), info, &value);
        mark += value;
    }
    if (mark != lastMark_) {
        lastMark_ = mark;
        lastActivity_ = now;
    }
}

HttpResult CurlTransfer::result(CURLcode code) {
    if (isTooLong_) {
        return failure("the answer is longer than allowed (body " + std::to_string(maxBodyBytes) +
                       " bytes, headers " + std::to_string(maxHeaderBytes) + ")");
    }
    if (code != CURLE_OK) {
        return failure(errorText_.front() != '\0' ? errorText_.data() : curl_easy_strerror(code));
    }
    long status = 0;
    curl_easy_getinfo(handle_.get(), CURLINFO_RESPONSE_CODE, &status);
    if (!hasWholeHead_ || (status < 200 && status != 101)) {
        // libcurl takes a connection that ends between two header lines for the end of an answer.
        return failure("the answer ended before its body");
    }
    UrlResponse response;
    response.status = static_cast<int>(status);
    response.headers = finalHeaders();
    response.body = std::move(body_);
    return response;
}

HeaderFields CurlTransfer::finalHeaders() const {
    HeaderFields fields;
    curl_header* header = nullptr;
    while ((header = curl_easy_nextheader(handle_.get(), CURLH_HEADER, -1, header)) != nullptr) {
        // libcurl 7.88 leaves the line's end in an empty value.
        fields.insert_or_assign(header->name, withoutBlanksAtEnd(header->value));
    }
    return fields;
}

HttpResult CurlTransfer::timedOut() const {
    const auto seconds = std::chrono::duration_cast<std::chrono::seconds>(idleTimeout_).count();
    return failure("nothing was sent or received for " + std::to_string(seconds) + " s");
}

HttpResult CurlTransfer::failure(std::string_view reason) const {
    const std::string where = url_.display.empty() ? std::string() : " " + url_.display;
    return std::unexpected(TransportError{printable(request_.method) + where + ": " + std::string(reason)});
}

}  // namespace mireth::platform
