#include "platform/qml/JsValue.h"

#include <QJSEngine>

#include "platform/qml/QmlConfiguration.h"
#include "tests/support/Common.h"

namespace kifo {
namespace {

/// What a QML host hands over, and the console lines that it gets for it.
class JsValueTest : public testing::FakesTest {
 protected:
  QJSValue js(const QString& text) {
    const QJSValue value = engine_.evaluate("(" + text + ")");
    EXPECT_FALSE(value.isError()) << value.toString().toStdString();
    return value;
  }

  QJSEngine engine_;
};

TEST_F(JsValueTest, EachKindOfJavaScriptHasItsKindOfValue) {
  const auto value = valueOf(js(R"({
    whole: 3, negative: -7, half: 0.5, huge: 1e300, yes: true, no: false, text: "İzmir",
    none: null, missing: undefined, call: function() {}, when: new Date(Date.UTC(2026, 2, 1, 9, 30)),
    list: [1, "a", [], {}], map: { inner: { deep: [null] } }
  })"));
  EXPECT_EQ(value, Value({{"whole", 3},
                          {"negative", -7},
                          {"half", 0.5},
                          {"huge", 1e300},
                          {"yes", true},
                          {"no", false},
                          {"text", "İzmir"},
                          {"none", nullptr},
                          {"missing", nullptr},
                          {"call", nullptr},
                          {"when", "2026-03-01T09:30:00.000Z"},
                          {"list", Value::list({1, "a", Value::list(), Value::map()})},
                          {"map", {{"inner", {{"deep", Value::list({nullptr})}}}}}}));
}

TEST_F(JsValueTest, WhatHasNoEndIsRefusedAndWhatIsOnlyDeepIsNot) {
  EXPECT_EQ(valueOf(js("(() => { const a = {}; a.self = { a: a }; return a })()")), std::nullopt);
  EXPECT_EQ(valueOf(js("(() => { const a = []; a.push(a, a); return a })()")), std::nullopt);
  EXPECT_EQ(valueOf(js("new Array(4000000000)")), std::nullopt);
  EXPECT_EQ(
      valueOf(js("(() => { let a = 1; for (let i = 0; i < 20000; ++i) a = [a]; return a })()")),
      std::nullopt);
  const auto deep =
      valueOf(js("(() => { let a = 1; for (let i = 0; i < 900; ++i) a = [a]; return a })()"));
  ASSERT_TRUE(deep);
  const Value* inner = &*deep;
  int levels = 0;
  for (; inner->asList() != nullptr; inner = &(*inner)[0]) ++levels;
  EXPECT_EQ(levels, 900);
  EXPECT_EQ(*inner, Value(1));
  // The same object twice is no circle.
  EXPECT_EQ(valueOf(js("(() => { const a = [1]; return [a, a] })()")),
            Value::list({Value::list({1}), Value::list({1})}));
}

TEST_F(JsValueTest, ParametersThatAreNoObjectAreLeftOutWithALine) {
  EXPECT_THAT(parametersOf(QJSValue(), "sendEvent"), IsEmpty());
  EXPECT_THAT(fake_.console->take(), IsEmpty()) << "none were given";
  for (const char* wrong : {"3", "'items'", "[1, 2]", "null", "(() => {})"}) {
    EXPECT_THAT(parametersOf(js(wrong), "sendEvent"), IsEmpty());
    EXPECT_THAT(
        fake_.console->take(),
        ElementsAre("Kifo Kifo: sendEvent: the parameters are left out: they are no object, "
                    "such as { items: 3 }"))
        << wrong;
  }
}

TEST_F(JsValueTest, TheConfigurationHasTheNamesOfTheCppOne) {
  const auto configuration = configurationOf(js(R"({
    bundle: "com.example.kiosk", apiUri: "http://a/api", listenerUri: "http://a/events",
    authorization: "token", actorId: "ada", applicationName: "kiosk",
    offlineCachingDisabled: true, sendActivityLifeCycleEventStatus: false, forceInitialize: true
  })"));
  EXPECT_EQ(configuration.bundle.bundleIdentifier, "com.example.kiosk");
  EXPECT_EQ(configuration.apiUri, "http://a/api");
  EXPECT_EQ(configuration.listenerUri, "http://a/events");
  EXPECT_EQ(configuration.authorization, "token");
  EXPECT_EQ(configuration.actorId, "ada");
  EXPECT_EQ(configuration.applicationName, "kiosk");
  EXPECT_TRUE(configuration.offlineCachingDisabled);
  EXPECT_TRUE(configuration.forceInitialize);
  EXPECT_EQ(configuration.sendActivityLifeCycleEventStatus, SendLifeCycleEventStatus::DISABLED);
  EXPECT_EQ(configuration.sendApplicationLifeCycleEventEnabled, SendLifeCycleEventStatus::ENABLED);
  EXPECT_THAT(fake_.console->take(), IsEmpty());
}

TEST_F(JsValueTest, AWrongNameOrTypeInTheConfigurationIsALineAndTheRestCounts) {
  const auto configuration = configurationOf(
      js("{ apiUrl: 'http://a', apiUri: 7, forceInitialize: 'yes', applicationName: 'kiosk' }"));
  EXPECT_EQ(configuration.applicationName, "kiosk");
  EXPECT_EQ(configuration.apiUri, "");
  EXPECT_FALSE(configuration.forceInitialize);
  EXPECT_THAT(fake_.console->take(),
              ElementsAre("Kifo Kifo: initialize: the configuration has no \"apiUrl\"",
                          "Kifo Kifo: initialize: \"apiUri\" wants a text",
                          "Kifo Kifo: initialize: \"forceInitialize\" wants true or false"));
  static_cast<void>(configurationOf(js("'http://a'")));
  EXPECT_THAT(fake_.console->take(),
              ElementsAre("Kifo Kifo: initialize: the configuration is no object, such as "
                          "{ apiUri: \"https://...\" }"));
}

}  // namespace
}  // namespace kifo
