#include "apps/demo/shop/ShopServer.h"

#include <QDir>
#include <QFile>
#include <utility>

#include "apps/demo/shop/Illustrations.h"

namespace kifo::shop {
namespace {

/// Where the campaigns' pictures are said to lie.
constexpr const char* kSampleAddress = "http://127.0.0.1:8080";

QString detailOf(const testing::ReceivedRequest& event) {
  for (const char* key : {"responseText", "responseType", "page_name", "code", "product"}) {
    if (const std::string text = event.text(key); !text.empty())
      return QString::fromStdString(text);
  }
  return {};
}

/// The name of its picture in the sample push; null for what is not in it.
const char* pushPictureOf(const Product& product) {
  switch (product.motif) {
    case Motif::lamp:
      return "push-lamp";
    case Motif::armchair:
      return "push-chair";
    case Motif::books:
      return "push-books";
    default:
      return nullptr;
  }
}

}  // namespace

ShopServer::ShopServer(QObject* parent) : QObject(parent) {
  server_.observe([this](const testing::ReceivedRequest& request) {
    const std::string name = request.text("name");
    if (!name.empty()) Q_EMIT heard(QString::fromStdString(name), detailOf(request));
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
  const auto serve = [this](const std::string& name, const QImage& image) {
    const std::string bytes = png(image).toStdString();
    server_.respond("/images/" + name + ".png", [bytes](const testing::ReceivedRequest&) {
      return testing::LocalServer::Answer{.body = bytes, .contentType = "image/png"};
    });
  };
  const QSize size(1040, 520);
  serve("room-morning", roomImage(size, Daytime::morning));
  serve("room-noon", roomImage(size, Daytime::noon));
  serve("room-evening", roomImage(size, Daytime::evening));
  for (const Product& product : catalogue()) {
    if (const char* name = pushPictureOf(product)) serve(name, productImage({800, 760}, product));
  }
  serve("face-sad", faceImage(128, Face::sad));
  serve("face-fair", faceImage(128, Face::fair));
  serve("face-happy", faceImage(128, Face::happy));
}

void ShopServer::servePushes() {
  server_.respond("/push", [this](const testing::ReceivedRequest& request) {
    if (!request.json || !request.json->is_object()) {
      return testing::LocalServer::Answer{.status = 400, .body = R"({"error":"no JSON object"})"};
    }
    Q_EMIT pushed(QByteArray::fromStdString(request.body));
    return testing::LocalServer::Answer{.body = "{}"};
  });
}

void ShopServer::serveCampaigns() {
  nlohmann::json answer{{"model", nlohmann::json::array()}};
  const QDir folder(QStringLiteral(":/campaigns"));
  for (const QString& name :
       folder.entryList({QStringLiteral("*.json")}, QDir::Files, QDir::Name)) {
    QFile file(folder.filePath(name));
    file.open(QIODevice::ReadOnly);
    QByteArray text = file.readAll();
    text.replace(kSampleAddress, server_.uri().c_str());
    nlohmann::json part = nlohmann::json::parse(text.toStdString());
    for (auto& item : part["model"]) answer["model"].push_back(std::move(item));
    part.erase("model");
    answer.update(part);
  }
  server_.campaigns().serveText(answer.dump());
}

}  // namespace kifo::shop
