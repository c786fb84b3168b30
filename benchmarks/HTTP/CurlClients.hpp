#pragma once

#include <array>
#include <functional>
#include <memory>
#include <string>
#include <thread>
#include <unordered_map>
#include <utility>
#include <vector>

#include <curl/curl.h>

#include "Origin.hpp"
#include "benchmarks/Limits.hpp"

/// A libcurl handle that gathers the body in a string.
class CurlTransfer {
  public:
    explicit CurlTransfer(const std::string& url, long bufferSize = 0) {
        curl_easy_setopt(handle_, CURLOPT_URL, url.c_str());
        curl_easy_setopt(handle_, CURLOPT_NOSIGNAL, 1L);
        curl_easy_setopt(handle_, CURLOPT_WRITEFUNCTION, &CurlTransfer::append);
        curl_easy_setopt(handle_, CURLOPT_WRITEDATA, this);
        curl_easy_setopt(handle_, CURLOPT_PRIVATE, this);
        if (bufferSize > 0) curl_easy_setopt(handle_, CURLOPT_BUFFERSIZE, bufferSize);
    }

    ~CurlTransfer() { curl_easy_cleanup(handle_); }

    CurlTransfer(const CurlTransfer&) = delete;
    CurlTransfer& operator=(const CurlTransfer&) = delete;

    [[nodiscard]] CURL* handle() const { return handle_; }

    std::string body;

  private:
    static std::size_t append(char* bytes, std::size_t size, std::size_t count, void* transfer) {
        static_cast<CurlTransfer*>(transfer)->body.append(bytes, size * count);
        return size * count;
    }

    CURL* handle_ = curl_easy_init();
};

/// Reused easy handles, one for each document.
template <long bufferSize>
class CurlEasyWith {
  public:
    CurlEasyWith() {
        const std::string field = "If-Modified-Since: " + std::string(NginxOrigin::lastModified);
        fields_ = curl_slist_append(nullptr, field.c_str());
        curl_easy_setopt(conditional_.handle(), CURLOPT_HTTPHEADER, fields_);
    }

    ~CurlEasyWith() { curl_slist_free_all(fields_); }

    CurlEasyWith(const CurlEasyWith&) = delete;
    CurlEasyWith& operator=(const CurlEasyWith&) = delete;

    std::size_t get(std::size_t document) {
        CurlTransfer& transfer = transfers_.at(document);
        transfer.body.clear();
        require(curl_easy_perform(transfer.handle()) == CURLE_OK, "libcurl");
        return transfer.body.size();
    }

    int getConditionally() {
        conditional_.body.clear();
        require(curl_easy_perform(conditional_.handle()) == CURLE_OK, "libcurl");
        long status = 0;
        curl_easy_getinfo(conditional_.handle(), CURLINFO_RESPONSE_CODE, &status);
        return static_cast<int>(status);
    }

  private:
    std::array<CurlTransfer, 2> transfers_{CurlTransfer(documentURL(0), bufferSize),
                                           CurlTransfer(documentURL(1), bufferSize)};
    CurlTransfer conditional_{documentURL(0), bufferSize};
    curl_slist* fields_ = nullptr;
};

using CurlEasy = CurlEasyWith<0>;
using CurlEasy512k = CurlEasyWith<512L * 1024>;

/// The limit of calls that do not block the caller: a reused easy handle on a thread of its own, one futex word there
/// and one back.
class CurlEasyThread {
  public:
    ~CurlEasyThread() {
        work_ = nullptr;
        asked_.set();
        thread_.join();
    }

    std::size_t get(std::size_t document) {
        std::size_t size = 0;
        run([&] { size = client_.get(document); });
        return size;
    }

    int getConditionally() {
        int status = 0;
        run([&] { status = client_.getConditionally(); });
        return status;
    }

  private:
    void run(std::function<void()> work) {
        work_ = std::move(work);
        asked_.set();
        answered_.wait();
    }

    void serve() {
        for (asked_.wait(); work_; asked_.wait()) {
            work_();
            answered_.set();
        }
    }

    CurlEasy client_;
    std::function<void()> work_;
    limits::Event asked_;
    limits::Event answered_;
    std::thread thread_{[this] { serve(); }};
};

/// 64 reused handles under one curl_multi_poll; with `isStoring` each body ends in a hash map, under its URL.
template <bool isStoring>
class CurlMultiPollWith {
  public:
    static constexpr std::size_t inFlight = 64;

    CurlMultiPollWith() {
        for (std::size_t i = 0; i < inFlight; ++i)
            transfers_.push_back(std::make_unique<CurlTransfer>(documentURL(0)));
    }

    ~CurlMultiPollWith() {
        transfers_.clear();
        curl_multi_cleanup(multi_);
    }

    CurlMultiPollWith(const CurlMultiPollWith&) = delete;
    CurlMultiPollWith& operator=(const CurlMultiPollWith&) = delete;

    void getMany(std::size_t document, std::size_t total) {
        const std::string url = documentURL(document);
        std::size_t started = 0;
        for (; started < inFlight; ++started) {
            curl_easy_setopt(transfers_[started]->handle(), CURLOPT_URL, url.c_str());
            start(*transfers_[started]);
        }
        for (std::size_t done = 0; done < total;) {
            int running = 0;
            curl_multi_perform(multi_, &running);
            int queued = 0;
            while (const CURLMsg* const message = curl_multi_info_read(multi_, &queued)) {
                CurlTransfer* transfer = nullptr;
                require(message->data.result == CURLE_OK, "libcurl");
                curl_easy_getinfo(message->easy_handle, CURLINFO_PRIVATE, &transfer);
                require(transfer->body.size() == documentSizes.at(document), "libcurl's body");
                curl_multi_remove_handle(multi_, transfer->handle());
                if constexpr (isStoring) stored_.insert_or_assign(url, std::move(transfer->body));
                ++done;
                if (started >= total) continue;
                ++started;
                start(*transfer);
            }
            if (done < total) curl_multi_poll(multi_, nullptr, 0, 1000, nullptr);
        }
    }

  private:
    void start(CurlTransfer& transfer) {
        transfer.body.clear();
        curl_multi_add_handle(multi_, transfer.handle());
    }

    CURLM* multi_ = curl_multi_init();
    std::vector<std::unique_ptr<CurlTransfer>> transfers_;
    std::unordered_map<std::string, std::string> stored_;
};

using CurlMultiPoll = CurlMultiPollWith<false>;
using CurlMultiPollAndStore = CurlMultiPollWith<true>;
