#include "apps/demo/shop/ShopServer.h"

#include <QDir>
#include <QFile>
#include <utility>

#include "Kifo_iOS_Common_Kit/core/ValueJson.h"

namespace kifo::shop {
namespace {

/// The server of the campaigns' pictures, as the campaigns name it.
constexpr const char* kSampleAddress = "http://127.0.0.1:8080";

QString detailOf(const testing::ReceivedRequest& event) {
  for (const char* key : {"responseText", "responseType", "page_name", "code", "product"}) {
    if (const std::string text = event.text(key); !text.empty())
      return QString::fromStdString(text);
  }
  return {};
}

}  // namespace

ShopServer::ShopServer(QObject* parent) : QObject(parent) {
  server_.observe([this](const testing::ReceivedRequest& request) {
    const std::string name = request.text("name");
    if (!name.empty()) Q_EMIT eventReceived(QString::fromStdString(name), detailOf(request));
  });
}

bool ShopServer::start() {
  if (server_.start() == 0) return false;
  servePictures();
  serveCampaigns();
  servePushes();
  return true;
}

void ShopServer::servePictures() {
  const QDir folder(QStringLiteral(":/images"));
  for (const QString& name : folder.entryList(QDir::Files)) {
    QFile file(folder.filePath(name));
    file.open(QIODevice::ReadOnly);
    const std::string bytes = file.readAll().toStdString();
    server_.respond("/images/" + name.toStdString(), [bytes](const testing::ReceivedRequest&) {
      return testing::LocalServer::Answer{.body = bytes, .contentType = "image/png"};
    });
  }
}

void ShopServer::servePushes() {
  server_.respond("/push", [this](const testing::ReceivedRequest& request) {
    if (!request.json || !request.json->asMap()) {
      return testing::LocalServer::Answer{.status = 400, .body = R"({"error":"no JSON object"})"};
    }
    Q_EMIT pushReceived(QByteArray::fromStdString(request.body));
    return testing::LocalServer::Answer{.body = "{}"};
  });
}

void ShopServer::serveCampaigns() {
  Value::List model;
  Value::Map answer;
  const QDir folder(QStringLiteral(":/campaigns"));
  for (const QString& name :
       folder.entryList({QStringLiteral("*.json")}, QDir::Files, QDir::Name)) {
    QFile file(folder.filePath(name));
    file.open(QIODevice::ReadOnly);
    QByteArray text = file.readAll();
    text.replace(kSampleAddress, server_.uri().c_str());
    const auto part = valueFromJson(text.toStdString()).value_or(Value());
    for (const auto& [key, value] : *part.asMap()) answer[key] = value;
    if (const auto* items = part["model"].asList()) {
      model.insert(model.end(), items->begin(), items->end());
    }
  }
  answer["model"] = std::move(model);
  server_.campaigns().serveText(jsonFromValue(answer));
}

}  // namespace kifo::shop
