#include "platforms/linux/network/CurlHttpClient.hpp"

#include <utility>

#include "platforms/linux/network/CurlWorker.hpp"

namespace mireth::platform {

CurlHttpClient::CurlHttpClient(CurlHttpClientOptions options)
    : worker_(std::make_shared<Worker>(std::move(options))) {
    worker_->start();
}

CurlHttpClient::~CurlHttpClient() {
    worker_->stop();
}

AnyCancellable CurlHttpClient::send(HttpRequest request, Completion completion) {
    return worker_->send(std::move(request), std::move(completion));
}

}  // namespace mireth::platform
