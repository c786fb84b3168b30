#pragma once

#if CORVANE_PEER_QT

#include <array>
#include <functional>

#include <QCoreApplication>
#include <QEventLoop>
#include <QNetworkAccessManager>
#include <QNetworkReply>

#include "Origin.hpp"

class QtClient {
  public:
    QtClient() {
        for (std::size_t document = 0; document < documentSizes.size(); ++document) {
            requests_.at(document) = QNetworkRequest(QUrl(QString::fromStdString(documentURL(document))));
        }
    }

    std::size_t get(std::size_t document) {
        const auto reply = finished(requests_.at(document));
        return static_cast<std::size_t>(reply->readAll().size());
    }

    int getConditionally() {
        QNetworkRequest request = requests_.at(0);
        request.setRawHeader("If-Modified-Since", QByteArray::fromStdString(std::string(NginxOrigin::lastModified)));
        return finished(request)->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
    }

    /// 64 requests outstanding, of which Qt sends six at a time.
    void getMany(std::size_t document, std::size_t total) {
        QEventLoop loop;
        std::size_t started = 0;
        std::size_t done = 0;
        std::function<void()> startOne = [&] {
            ++started;
            QNetworkReply* const reply = manager_.get(requests_.at(document));
            QObject::connect(reply, &QNetworkReply::finished, reply, [&, reply] {
                require(static_cast<std::size_t>(reply->readAll().size()) == documentSizes.at(document), "Qt's body");
                reply->deleteLater();
                if (++done == total) {
                    loop.quit();
                } else if (started < total) {
                    startOne();
                }
            });
        };
        for (int i = 0; i < 64; ++i)
            startOne();
        loop.exec();
    }

  private:
    std::unique_ptr<QNetworkReply> finished(const QNetworkRequest& request) {
        std::unique_ptr<QNetworkReply> reply(manager_.get(request));
        QEventLoop loop;
        QObject::connect(reply.get(), &QNetworkReply::finished, &loop, &QEventLoop::quit);
        loop.exec();
        return reply;
    }

    QNetworkAccessManager manager_;
    std::array<QNetworkRequest, 2> requests_;
};

#endif
