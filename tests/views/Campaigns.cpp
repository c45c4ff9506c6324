#include "tests/views/Campaigns.h"

#include "Kifo_iOS_Common_Kit/inapp/PopupType.h"
#include "tests/views/PopupFixture.h"

namespace kifo::testing {
namespace {

struct Look {
  std::string panel = "FFFFFF";
  std::string ink = "1C1C1E";
};

AppCommunicationItem& start(PopupRequest& request, PopupType type, const std::string& title,
                            const std::string& text, const Look& look = {}) {
  auto item = std::make_shared<AppCommunicationItem>();
  item->uuid = "uuid";
  item->type = std::string(rawValue(type));
  item->bgColor = look.panel;
  PopupPreferences& p = request.preferences;
  p = {};
  p.appCommunicationItem = item;
  p.type = item->type;
  p.title = title;
  p.detailText = text;
  p.titleColor = p.detailTextColor = p.questionColor = colorFromHex(look.ink);
  p.backgroundColor = colorFromHex(look.panel);
  return *item;
}

AppCommunicationItem& ask(PopupRequest& request, PopupType type, const std::string& title,
                          const std::string& text, const std::string& question,
                          const std::string& submit, const Look& look = {}) {
  auto& item = start(request, type, title, text, look);
  if (!question.empty()) request.preferences.questionText = question;
  item.submitButton = request.preferences.submitButton =
      option("submit", submit, "0A5CD8", "FFFFFF");
  return item;
}

void choose(PopupRequest& request, const std::vector<std::string>& texts) {
  for (const auto& text : texts) {
    request.preferences.choices.push_back(option("c" + text, text));
  }
}

void askForScore(AppCommunicationItem& item, int highest) {
  item.minScore = 0;
  item.maxScore = highest;
}

void askForText(AppCommunicationItem& item, const std::string& question) {
  item.defaultFreeText = DefaultFreeText{item.bgColor == "FFFFFF" ? "1C1C1E" : "FFFFFF", question};
}

void plain(PopupRequest& r) {
  start(r, PopupType::popup, "The new collection is here", "Light layers for the warm days.");
  r.preferences.image = "https://pictures.example/summer.jpg";
  r.preferences.buttons = {option("b1", "Discover", "0A5CD8", "FFFFFF"),
                           option("b2", "Remind me later"), option("b3", "No, thanks")};
}

void coupon(PopupRequest& r) {
  auto& item = start(r, PopupType::popup, "A present for you", "10 % off your next order.",
                     {"FFF8EC", "5B3A00"});
  item.coupon = Coupon{{"SUMMER10", "C2410C", "FFEDD5", "22"},
                       {{"Copy code", "FFFFFF", "C2410C", {}}, {"Copied", "7C2D12", "FDBA74", {}}},
                       {"C2410C", "4"}};
  r.preferences.buttons = {option("b1", "Shop now", "5B3A00", "FFFFFF")};
}

void carousel(PopupRequest& r) {
  start(r, PopupType::popup, "Three looks, one price", "Swipe to see them all.");
  for (const std::string number : {"1", "2", "3"}) {
    r.preferences.images.push_back("https://pictures.example/" + number + ".png");
  }
  r.preferences.buttons = {option("b1", "Take a look", "111827", "FFFFFF")};
}

void survey(PopupRequest& r) {
  auto& item = ask(r, PopupType::survey, "What shall we build next?",
                   "Choose the one that you would use most.", "Your favourite", "Vote",
                   {"1E293B", "F8FAFC"});
  askForText(item, "Anything to add?");
  item.defaultFreeTextCheckBox = true;
  for (int i = 1; i <= 20; ++i) choose(r, {"Idea number " + std::to_string(i)});
  r.preferences.choices[1]->text =
      "A considerably longer idea that needs a second line to say what it is about, if not a third";
}

void emoji(PopupRequest& r) {
  ask(r, PopupType::emoji, "Enjoying the app?", "", "Pick the face that fits", "Send");
  choose(r, {"sad", "neutral", "happy"});
  for (auto& choice : r.preferences.choices) {
    choice->imageUrl = "https://pictures.example/" + *choice->text + ".png";
  }
}

void emojiWithText(PopupRequest& r) {
  auto& item = ask(r, PopupType::emoji, "How was your visit?", "Every voice counts.", "Rate us",
                   "Send", {"14532D", "F0FDF4"});
  askForText(item, "What can we do better?");
  choose(r, {"😡", "😐", "😍"});
}

void score(PopupRequest& r) {
  auto& item =
      ask(r, PopupType::score, "One question", "It helps us to get better.",
          "How likely are you to recommend us to a friend?", "Send score", {"312E81", "FFFFFF"});
  askForScore(item, 100000);
  askForText(item, "Why this score?");
}

void openEnded(PopupRequest& r) {
  auto& item = ask(r, PopupType::openEnded, "Tell us more", "We read every answer.",
                   "What did you miss today?", "Send");
  askForText(item, "Your answer");
}

void openEndedBare(PopupRequest& r) {
  ask(r, PopupType::openEnded, "Tell us more", "We read every answer.", "What did you miss today?",
      "Send");
}

void arabic(PopupRequest& r) {
  auto& item = ask(r, PopupType::survey, "كيف كانت تجربتك معنا؟",
                   "رأيك يساعدنا على تحسين خدماتنا باستمرار.", "", "إرسال");
  askForText(item, "هل تريد إضافة شيء؟");
  choose(r, {"ممتازة", "جيدة جدا", "يمكن أن تكون أفضل"});
}

void arabicScore(PopupRequest& r) {
  auto& item = ask(r, PopupType::score, "قيم زيارتك", "سؤال واحد فقط.",
                   "ما مدى احتمال أن توصي بنا؟", "إرسال");
  askForScore(item, 10);
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
      ask(r, PopupType::survey,
          "Donaudampfschifffahrtselektrizitätenhauptbetriebswerkbauunterbeamtengesellschaft",
          "Rindfleischetikettierungsüberwachungsaufgabenübertragungsgesetz und andere Wörter, die "
          "in keine Zeile passen, stehen hier, damit man sieht, dass nichts abgeschnitten wird und "
          "alles seinen Platz findet.",
          "Llanfairpwllgwyngyllgogerychwyrndrobwllllantysiliogogogoch?",
          "Geschwindigkeitsbegrenzungsschilderaufstellungsgenehmigung absenden");
  askForText(
      item,
      "Eierschalensollbruchstellenverursacherbedienungsanleitung, die man gelesen haben sollte");
  choose(r, {"Kraftfahrzeughaftpflichtversicherungsvertragsbedingungen", "Nein"});
}

void seeThrough(PopupRequest& r) {
  start(r, PopupType::popup, "Pale yellow", "A panel with some transparency.",
        {"CC0F172A", "FFF9C4"});
  r.preferences.buttons = {option("b1", "White on white", "FFFFFF", "FFFFFF")};
}

void bare(PopupRequest& r) {
  r.preferences = {};
}

}  // namespace

std::vector<Campaign> campaigns() {
  return {{"plain", plain},
          {"coupon", coupon},
          {"carousel", carousel},
          {"survey", survey},
          {"emoji", emoji},
          {"emoji-text", emojiWithText},
          {"score", score},
          {"open-ended", openEnded},
          {"open-ended-bare", openEndedBare},
          {"arabic", arabic},
          {"arabic-score", arabicScore},
          {"chinese", chinese},
          {"long-words", longWords},
          {"see-through", seeThrough},
          {"bare", bare}};
}

}  // namespace kifo::testing
