#include <QGuiApplication>
#include <QQmlApplicationEngine>
int main(int argc, char** argv) {
  QGuiApplication application(argc, argv);
  QQmlApplicationEngine engine(QUrl("qrc:/Host/Main.qml"));
  return application.exec();
}
