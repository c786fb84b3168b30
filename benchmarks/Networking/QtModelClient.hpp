#pragma once

#if CORVANE_PEER_QT

#include <memory>
#include <optional>

#include <QCoreApplication>
#include <QEventLoop>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QNetworkAccessManager>
#include <QNetworkReply>

#include "benchmarks/JSON/Matchday.hpp"

/// The structs as an application on Qt makes them: from a QJsonDocument, on the main thread.
class QtModelClient {
  public:
    inline static QString url;

    Matchday get() {
        const std::unique_ptr<QNetworkReply> reply(manager_.get(QNetworkRequest(QUrl(url))));
        QEventLoop loop;
        QObject::connect(reply.get(), &QNetworkReply::finished, &loop, &QEventLoop::quit);
        loop.exec();
        return read(QJsonDocument::fromJson(reply->readAll()).object());
    }

  private:
    static std::optional<int> goals(const QJsonValue& value) {
        return value.isNull() ? std::nullopt : std::optional(value.toInt());
    }

    static Side side(const QJsonValue& value) { return {.name = value["name"].toString().toStdString()}; }

    static Matchday read(const QJsonObject& object) {
        Matchday day;
        for (const QJsonValue value : object["matches"].toArray()) {
            day.matches.push_back({.id = value["id"].toInteger(),
                                   .round = value["round"].toInt(),
                                   .status = value["status"].toString().toStdString(),
                                   .finished = value["finished"].toBool(),
                                   .home = side(value["home"]),
                                   .away = side(value["away"]),
                                   .score = {goals(value["score"]["home"]), goals(value["score"]["away"])},
                                   .venue = value["venue"].toString().toStdString(),
                                   .updated = value["updated"].toString().toStdString()});
        }
        return day;
    }

    QNetworkAccessManager manager_;
};

#endif
