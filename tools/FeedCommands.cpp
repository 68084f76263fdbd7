// SPDX-License-Identifier: Apache-2.0
#include "tools/FeedCommands.hpp"

#include <algorithm>
#include <filesystem>
#include <string_view>
#include <system_error>

#include "Classes/Feeds/FeedReading.hpp"
#include "platform/Foundation/NSUserDefaults.hpp"
#include "platform/Foundation/System/InstalledProgram.hpp"
#include "platform/Foundation/id.hpp"
#include "tools/ExitCode.hpp"
#include "tools/InputFile.hpp"
#include "tools/InputText.hpp"
#include "tools/LongResult.hpp"
#include "tools/Output.hpp"
#include "tools/URLOperands.hpp"

namespace nimbo {

namespace {

struct FeedOptions : CommonOptions {
  std::optional<std::string> url;
  bool html = false;
  bool linked = false;
  bool asGiven = false;
  bool JSONFeed = false;
  bool OPML = false;
};

void writeItems(const Feed &feed, const CommonOptions &options) {
  LongResult result(options);
  result.beginList();
  for (const FeedItem &item : feed.items) result.addObject(dictionaryOfFeedItem(item));
  result.endList();
  result.end();
}

/// Makes the style sheet that is installed with this program the one of pages, unless the user has set another.
void registerStyleSheet() {
  const std::vector<std::string> places = placesOfData("feed.css");
  const auto found = std::ranges::find_if(places, [](const std::string &place) {
    std::error_code error;
    return std::filesystem::is_regular_file(place, error);
  });
  if (found == places.end()) return;
  NSUserDefaults::standardUserDefaults().registerDefaults(
      {{u"linkableFeedStyleSheet"_ns, NSString::stringWithFileSystemRepresentation(*found)}});
}

/// The text of a feed. A byte order mark is right about it, whatever the declaration says.
NSString textOfFeed(const std::string &path, double patienceSeconds) {
  constexpr std::string_view kByteOrderMark = "\xef\xbb\xbf";
  const NSData data = readInput(path, patienceSeconds);
  if (!data.view().starts_with(kByteOrderMark)) return textOfData(data);
  return NSString::stringWithLossyUTF8String(data.view().substr(kByteOrderMark.size()));
}

NSURL baseOfTexts(const Feed &feed, const NSURL &url) {
  if (url) return url;
  return NSURL::URLWithString(feed.feedURL ? feed.feedURL : feed.header.link);
}

int runFeed(const FeedOptions &options, const Operands &operands) {
  if (options.html + options.JSONFeed + options.OPML > 1)
    throw UsageError("--html, --json-feed and --opml cannot be joined");
  if ((options.linked || options.asGiven) && !options.html)
    throw UsageError("--linked-style and --as-given are for --html");
  if (options.html || options.OPML)
    refuseOptions(options, {"pretty", "plist"}, options.html ? "--html" : "--opml");
  const NSURL url = options.url ? URLOfOperand(*options.url) : NSURL();
  const std::optional<Feed> feed = readFeed(textOfFeed(operands.front(), options.timeoutSeconds), url);
  if (!feed) {
    writeMessage(nameOfInput(operands.front()) + ": is no feed");
    return kExitNil;
  }
  if (options.OPML && !url && feed->feedURL.length() == 0)
    throw UsageError("--opml needs --url, since the feed does not say where it is");
  if (options.html) {
    registerStyleSheet();
    writeText(stringByConvertingFeedToHTML(
        *feed, {.isSafe = !options.asGiven, .isLinked = options.linked, .baseURL = baseOfTexts(*feed, url)}));
  } else if (options.JSONFeed) {
    writeResult(JSONFeedOfFeed(*feed), options);
  } else if (options.OPML) {
    writeText(OPMLOfFeed(*feed, url));
  } else {
    writeItems(*feed, options);
  }
  return kExitAnswered;
}

}  // namespace

const std::vector<Command> &feedCommands() {
  static const std::vector<Command> commands = {
      {{.name = "feed",
        .operands = "FILE",
        .summary = "the items of a feed, or the feed as a page",
        .description = R"(
Prints an array of the items of a feed (RSS, RDF, Atom, JSON Feed): "title", "description",
"content", "author", "tags", "enclosures", "calendarDate" (now, when the item has none), "date" (as
the feed has it), "link", and "id", "published", "updated" and "image" when there are any. --html
prints a page, in which no script of the feed runs without --as-given. FILE "-" is standard input.)",
        .minimumOperands = 1,
        .maximumOperands = 1,
        .asksHelper = false},
       runFeed,
       {{"url", &FeedOptions::url, "URL", "where the feed is, for links that are relative"},
        {"html", &FeedOptions::html, nullptr, "print the feed as a page"},
        {"linked-style", &FeedOptions::linked, nullptr, "in a page, link to the style sheet"},
        {"as-given", &FeedOptions::asGiven, nullptr, "in a page, write texts as the feed has them"},
        {"json-feed", &FeedOptions::JSONFeed, nullptr, "print the feed as JSON Feed 1.1"},
        {"opml", &FeedOptions::OPML, nullptr, "print a list of subscriptions with the feed in it"}}},
  };
  return commands;
}

}  // namespace nimbo
