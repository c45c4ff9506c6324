#include "tests/views/Campaigns.h"

#include "Kifo_iOS_Common_Kit/inapp/PopupType.h"
#include "tests/views/PopupFixture.h"

namespace kifo::testing {
namespace {

AppCommunicationItem& start(PopupRequest& request, PopupType type, const std::string& title,
                            const std::string& text, const std::string& panel = "FFFFFF",
                            const std::string& ink = "1C1C1E") {
  auto item = std::make_shared<AppCommunicationItem>();
  item->uuid = "uuid";
  item->type = std::string(rawValue(type));
  item->bgColor = panel;
  PopupPreferences& p = request.preferences;
  p = {};
  p.appCommunicationItem = item;
  p.type = item->type;
  p.title = title;
  p.detailText = text;
  p.titleColor = p.detailTextColor = p.questionColor = colorFromHex(ink);
  p.backgroundColor = colorFromHex(panel);
  return *item;
}

void submit(PopupRequest& request, const std::string& text, const std::string& color = "0A5CD8",
            const std::string& ink = "FFFFFF") {
  request.preferences.submitButton = option("submit", text, color, ink);
  request.preferences.appCommunicationItem->submitButton = request.preferences.submitButton;
}

void choose(PopupRequest& request, const std::vector<std::string>& texts) {
  for (const auto& text : texts) {
    request.preferences.choices.push_back(option("c" + text, text));
  }
}

void plain(PopupRequest& r) {
  start(r, PopupType::popup, "Free delivery this weekend",
        "On every order above 25 €. Until Sunday, midnight.");
  r.preferences.buttons = {option("b1", "Show me the offers", "0A5CD8", "FFFFFF"),
                           option("b2", "Not now", "EEF1F6", "1C1C1E")};
}

void plainWithImage(PopupRequest& r) {
  start(r, PopupType::popup, "The new collection is here", "Light layers for the warm days.");
  r.preferences.image = "https://pictures.example/summer.jpg";
  r.preferences.buttons = {option("b1", "Discover"), option("b2", "Remind me later"),
                           option("b3", "No, thanks")};
}

void coupon(PopupRequest& r) {
  auto& item = start(r, PopupType::popup, "A present for you", "10 % off your next order.",
                     "FFF8EC", "5B3A00");
  item.coupon = Coupon{{"SUMMER10", "C2410C", "FFEDD5", "22"},
                       {{"Copy code", "FFFFFF", "C2410C", {}}, {"Copied", "7C2D12", "FDBA74", {}}},
                       {"C2410C", "4"}};
  r.preferences.buttons = {option("b1", "Shop now", "5B3A00", "FFFFFF")};
}

void carousel(PopupRequest& r) {
  start(r, PopupType::popup, "Three looks, one price", "Swipe to see them all.");
  r.preferences.images = {"https://pictures.example/1.png", "https://pictures.example/2.png",
                          "https://pictures.example/3.png"};
  r.preferences.buttons = {option("b1", "Take a look", "111827", "FFFFFF")};
}

void survey(PopupRequest& r) {
  start(r, PopupType::survey, "How did you hear of us?", "One tap, and you are done.");
  choose(r, {"From a friend", "In a shop", "On the web"});
  submit(r, "Send answer");
}

void longSurvey(PopupRequest& r) {
  auto& item = start(r, PopupType::survey, "What shall we build next?",
                     "Choose the one that you would use most.", "1E293B", "F8FAFC");
  r.preferences.questionText = "Your favourite";
  item.defaultFreeText = DefaultFreeText{"E2E8F0", "Anything to add?"};
  item.defaultFreeTextCheckBox = true;
  std::vector<std::string> texts;
  for (int i = 1; i <= 20; ++i) texts.push_back("Idea number " + std::to_string(i));
  texts[1] =
      "A considerably longer idea that needs a second line to say what it is about, if not a third";
  choose(r, texts);
  submit(r, "Vote", "38BDF8", "0F172A");
}

void emoji(PopupRequest& r) {
  start(r, PopupType::emoji, "Enjoying the app?", "");
  r.preferences.questionText = "Pick the face that fits";
  for (const std::string face : {"sad", "neutral", "happy"}) {
    r.preferences.choices.push_back(option(face, face));
    r.preferences.choices.back()->imageUrl = "https://pictures.example/" + face + ".png";
  }
  submit(r, "Send");
}

void emojiWithText(PopupRequest& r) {
  auto& item =
      start(r, PopupType::emoji, "How was your visit?", "Every voice counts.", "F0FDF4", "14532D");
  r.preferences.questionText = "Rate us";
  item.defaultFreeText = DefaultFreeText{"166534", "What can we do better?"};
  for (const std::string face : {"😡", "😐", "😍"})
    r.preferences.choices.push_back(option(face, face));
  submit(r, "Send", "16A34A", "FFFFFF");
}

void score(PopupRequest& r) {
  auto& item =
      start(r, PopupType::score, "One question", "It helps us to get better.", "312E81", "FFFFFF");
  r.preferences.questionText = "How likely are you to recommend us to a friend?";
  item.minScore = 0;
  item.maxScore = 10;
  submit(r, "Send score", "FACC15", "1E1B4B");
}

void scoreWithText(PopupRequest& r) {
  auto& item = start(r, PopupType::score, "One question", "It helps us to get better.");
  r.preferences.questionText = "How likely are you to recommend us?";
  item.minScore = 0;
  item.maxScore = 100000;
  item.defaultFreeText = DefaultFreeText{"1C1C1E", "Why this score?"};
  submit(r, "Send score");
}

void openEnded(PopupRequest& r) {
  auto& item = start(r, PopupType::openEnded, "Tell us more", "We read every answer.");
  r.preferences.questionText = "What did you miss today?";
  item.defaultFreeText = DefaultFreeText{"1C1C1E", "Your answer"};
  submit(r, "Send");
}

void openEndedBare(PopupRequest& r) {
  start(r, PopupType::openEnded, "Tell us more", "We read every answer.");
  r.preferences.questionText = "What did you miss today?";
  submit(r, "Send");
}

void arabic(PopupRequest& r) {
  auto& item = start(r, PopupType::survey, "كيف كانت تجربتك معنا؟",
                     "رأيك يساعدنا على تحسين خدماتنا باستمرار.");
  item.defaultFreeText = DefaultFreeText{"1C1C1E", "هل تريد إضافة شيء؟"};
  choose(r, {"ممتازة", "جيدة جدا", "يمكن أن تكون أفضل"});
  submit(r, "إرسال");
}

void arabicScore(PopupRequest& r) {
  auto& item = start(r, PopupType::score, "قيم زيارتك", "سؤال واحد فقط.");
  r.preferences.questionText = "ما مدى احتمال أن توصي بنا؟";
  item.minScore = 0;
  item.maxScore = 10;
  submit(r, "إرسال");
}

void chinese(PopupRequest& r) {
  start(r, PopupType::popup, "夏季新品上市，全场八折优惠，机会难得，欲购从速",
        "即日起至月底，凡在本店购物满三百元的顾客均可获得精美礼品一份，数量有限，送完为止。详情请咨"
        "询店员。");
  r.preferences.buttons = {option("b1", "立即查看全部优惠商品", "DC2626", "FFFFFF"),
                           option("b2", "以后再说")};
}

void longWords(PopupRequest& r) {
  auto& item =
      start(r, PopupType::survey,
            "Donaudampfschifffahrtselektrizitätenhauptbetriebswerkbauunterbeamtengesellschaft",
            "Rindfleischetikettierungsüberwachungsaufgabenübertragungsgesetz und andere Wörter, "
            "die in keine Zeile passen, "
            "stehen hier, damit man sieht, dass nichts abgeschnitten wird und alles seinen Platz "
            "findet.");
  r.preferences.questionText = "Llanfairpwllgwyngyllgogerychwyrndrobwllllantysiliogogogoch?";
  item.defaultFreeText = DefaultFreeText{
      "1C1C1E",
      "Eierschalensollbruchstellenverursacherbedienungsanleitung, die man gelesen haben sollte"};
  choose(r, {"Kraftfahrzeughaftpflichtversicherungsvertragsbedingungen", "Nein"});
  submit(r, "Geschwindigkeitsbegrenzungsschilderaufstellungsgenehmigung absenden");
}

void emptyColours(PopupRequest& r) {
  start(r, PopupType::popup, "White on white", "Neither the text nor the panel has a colour.",
        "FFFFFF", "FFFFFF");
  r.preferences.appCommunicationItem->bgColor.reset();
  r.preferences.buttons = {option("b1", "White too", "FFFFFF", "FFFFFF"),
                           option("b2", "Nothing at all")};
}

void yellowOnWhite(PopupRequest& r) {
  start(r, PopupType::survey, "Pale yellow on white", "Colours that are nearly the panel's own.",
        "FFFFFF", "FFF9C4");
  choose(r, {"One", "Two"});
  submit(r, "Send", "FFFDE7", "FFF9C4");
}

void translucent(PopupRequest& r) {
  start(r, PopupType::popup, "See-through", "A panel with some transparency.", "CC0F172A",
        "FFFFFF");
  r.preferences.buttons = {option("b1", "Fine", "FFFFFF", "0F172A")};
}

void bare(PopupRequest& r) {
  r.preferences = {};
  r.preferences.type = "POPUP";
}

}  // namespace

std::vector<Campaign> campaigns() {
  return {{"plain", plain},
          {"plain-image", plainWithImage},
          {"coupon", coupon},
          {"carousel", carousel},
          {"survey", survey},
          {"survey-long", longSurvey},
          {"emoji", emoji},
          {"emoji-text", emojiWithText},
          {"score", score},
          {"score-text", scoreWithText},
          {"open-ended", openEnded},
          {"open-ended-bare", openEndedBare},
          {"arabic", arabic},
          {"arabic-score", arabicScore},
          {"chinese", chinese},
          {"long-words", longWords},
          {"white-on-white", emptyColours},
          {"yellow-on-white", yellowOnWhite},
          {"translucent", translucent},
          {"bare", bare}};
}

}  // namespace kifo::testing
