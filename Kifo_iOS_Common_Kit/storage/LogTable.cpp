#include "Kifo_iOS_Common_Kit/storage/LogTable.h"

#include <initializer_list>

namespace kifo {
namespace {

std::string joined(std::initializer_list<std::string_view> parts) {
  std::string text;
  for (const auto part : parts) text += part;
  return text;
}

}  // namespace

bool LogTable::isQuotable(std::string_view text) {
  return text.find_first_of(std::string_view("'\0", 2)) == std::string_view::npos;
}

bool LogTable::isQuotable(const KifoLog& log) {
  return isQuotable(log._paramaters) && isQuotable(log._requestId) && isQuotable(log._url) &&
         isQuotable(log._httpMethod);
}

std::string LogTable::insert(const KifoLog& log) {
  return joined(
      {"INSERT INTO KifoLog (PARAMETERS, REQUEST_ID, URL, DATE, ISSYNC, TRYCOUNT, HTTPMETHOD, "
       "ISSYNC_SUCCESS) VALUES ('",
       log._paramaters, "', '", log._requestId, "', '", log._url, "', ", std::to_string(log._date),
       ", ", std::to_string(log._isSync), ", ", std::to_string(log._tryCount), ", '",
       log._httpMethod, "', 0)"});
}

std::string LogTable::remove(const std::string& requestId) {
  return joined({"delete from KifoLog where REQUEST_ID = '", requestId, "' or TRYCOUNT > 0"});
}

/// ISSYNC becomes 1 after a failure as well. Kept for compatibility.
std::string LogTable::markAnswered(const std::string& requestId, int success) {
  return joined({"update KifoLog set ISSYNC_SUCCESS = ", std::to_string(success),
                 ", ISSYNC = 1 where REQUEST_ID = '", requestId, "'"});
}

std::string LogTable::markTried(const std::string& requestId) {
  return joined(
      {"update KifoLog set TRYCOUNT = TRYCOUNT + 1 where REQUEST_ID = '", requestId, "'"});
}

std::string LogTable::selectFirstWaiting(const std::string& excluded) {
  const std::string condition = excluded.empty() ? "" : " and REQUEST_ID <> '" + excluded + "'";
  return joined(
      {"select ID, PARAMETERS, URL, HTTPMETHOD, DATE, TRYCOUNT, ISSYNC, REQUEST_ID from "
       "KifoLog where ISSYNC_SUCCESS = 0 and TRYCOUNT = 0",
       condition, " LIMIT 1"});
}

}  // namespace kifo
