// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "Classes/Entities/NSString+HtmlExtensions+Entities.hpp"
#include "Classes/Markup/NSString+XmlExtensions.hpp"
#include "Classes/Strings/NSString+NSStringNimboExtensions/Trimming.hpp"
#include "platform/Foundation/id.hpp"

namespace nimbo {

/// The obvious reader of well-formed feeds: all tags as strings, and a table of names. Without CDATA sections,
/// attributes of links and elements inside of texts.
class PlainFeedReader {
 public:
  using Item = std::map<std::string, std::string>;

  static std::vector<Item> itemsOf(const NSString &feed) {
    static const std::map<std::string, std::string> kFields = {
        {"title", "title"},         {"link", "link"},       {"description", "description"},
        {"summary", "description"}, {"content", "content"}, {"content:encoded", "content"},
        {"author", "author"},       {"name", "author"},     {"dc:creator", "author"},
        {"pubdate", "date"},        {"dc:date", "date"},    {"updated", "date"},
        {"published", "date"},      {"issued", "date"},     {"category", "tags"}};
    std::vector<Item> items;
    Item item;
    bool isInside = false;
    for (const id &entry : getXml(feed)) {
      const std::string tag = entry.dictionary().objectForKey(u"Tag"_ns).string().UTF8String();
      const bool isEnd = tag.starts_with("</");
      std::string name = tag.substr(0, tag.find_first_of(" >")).substr(tag.empty() ? 0 : isEnd ? 2 : 1);
      for (char &c : name) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
      if (name == "item" || name == "entry") {
        if (isEnd && item["description"] != "Array") items.push_back(item);
        item = {};
        isInside = !isEnd;
      } else if (const auto field = kFields.find(name); isInside && isEnd && field != kFields.end()) {
        const NSString text = decoded(entry.dictionary().objectForKey(u"Content"_ns).string(), field->second);
        std::string &value = item[field->second];
        if (field->second == "tags" && text.length() > 0)
          value += text.UTF8String() + "|";
        else if (value.empty())
          value = text.UTF8String();
      }
    }
    return items;
  }

 private:
  static NSString decoded(const NSString &content, const std::string &field) {
    const NSString text = stringByTrimmingWhiteSpaces(content ? content : u""_ns);
    const bool isMinimal = field == "description" || field == "content" || field == "link";
    return isMinimal ? stringByConvertingStandardEntitiesToCharacters(text)
                     : stringByConvertingEntitiesToCharacters(text);
  }
};

}  // namespace nimbo
