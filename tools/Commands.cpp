// SPDX-License-Identifier: Apache-2.0
#include "tools/Commands.hpp"

#include <algorithm>
#include <string_view>

#include "tools/CharsetCommands.hpp"
#include "tools/DateCommands.hpp"
#include "tools/EntityCommands.hpp"
#include "tools/FeedCommands.hpp"
#include "tools/HelpCommands.hpp"
#include "tools/HelperCommands.hpp"
#include "tools/LocationCommands.hpp"
#include "tools/MarkupCommands.hpp"
#include "tools/PageCommands.hpp"
#include "tools/PasteboardCommands.hpp"
#include "tools/PictureCommands.hpp"
#include "tools/PlainTextCommands.hpp"
#include "tools/ResourceForkCommands.hpp"
#include "tools/RichTextCommands.hpp"
#include "tools/TypeCommands.hpp"
#include "tools/URLCommands.hpp"
#include "tools/WebArchiveCommands.hpp"

namespace nimbo {

const std::vector<Command> &allCommands() {
  static const std::vector<Command> commands = [] {
    std::vector<Command> all;
    for (const auto *more :
         {&helperCommands(), &webArchiveCommands(), &richTextCommands(), &pictureCommands(),
          &plainTextCommands(), &markupCommands(), &pageCommands(), &feedCommands(), &entityCommands(),
          &charsetCommands(), &urlCommands(), &dateCommands(), &locationCommands(), &resourceForkCommands(),
          &typeCommands(), &pasteboardCommands(), &helpCommands()})
      all.insert(all.end(), more->begin(), more->end());
    return all;
  }();
  return commands;
}

const Command &commandNamed(const std::string &name) {
  const auto found =
      std::ranges::find(allCommands(), name, [](const Command &one) { return std::string_view(one.name); });
  if (found == allCommands().end()) throw UsageError("unknown command '" + name + "'");
  return *found;
}
}  // namespace nimbo
