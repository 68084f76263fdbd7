// SPDX-License-Identifier: Apache-2.0
#include "platform/Foundation/Desktop/SessionDesktop.hpp"

#include <unistd.h>

#include <charconv>
#include <string>
#include <string_view>

#include "platform/Foundation/Desktop/SessionBus.hpp"
#include "platform/Foundation/NSBundle.hpp"
#include "platform/Foundation/NSTask.hpp"
#include "platform/Foundation/System/DataWriting.hpp"
#include "platform/Foundation/System/InstalledProgram.hpp"

namespace nimbo {
namespace {

using detail::BusService;
using detail::SessionBus;
using detail::Variant;

constexpr BusService kNotifications = {"org.freedesktop.Notifications", "/org/freedesktop/Notifications",
                                       "org.freedesktop.Notifications"};
constexpr BusService kPortal = {"org.freedesktop.portal.Desktop", "/org/freedesktop/portal/desktop",
                                "org.freedesktop.portal.OpenURI"};
/// The action of who presses the notification itself.
constexpr std::string_view kDefaultAction = "default";
/// Times of notifications: as the desktop likes it, and until they are closed.
constexpr gint32 kUsualTime = -1;
constexpr gint32 kNoTimeLimit = 0;
constexpr double kDetachingSeconds = 10;

/// What the desktop's notifications can.
struct Capabilities {
  bool hasActions = false;
  bool hasMarkup = false;
};

/// Nothing when there are no notifications.
std::optional<Capabilities> capabilitiesOf(const SessionBus &bus) {
  const Variant answer = bus ? bus.call(kNotifications, "GetCapabilities", nullptr) : nullptr;
  if (!answer || !g_variant_is_of_type(answer.get(), G_VARIANT_TYPE("(as)"))) return std::nullopt;
  Capabilities capabilities;
  GVariantIter *names = nullptr;
  const char *name = nullptr;
  g_variant_get(answer.get(), "(as)", &names);
  while (g_variant_iter_next(names, "&s", &name)) {
    capabilities.hasActions |= std::string_view(name) == "actions";
    capabilities.hasMarkup |= std::string_view(name) == "body-markup";
  }
  g_variant_iter_free(names);
  return capabilities;
}

/// The message, with the address in a line of its own when nobody can press a button.
std::string messageOf(const DesktopAlert &alert, bool canAnswer) {
  std::string message = alert.message ? alert.message.UTF8String() : std::string();
  if (!canAnswer && alert.address) message += "\n" + alert.address.absoluteString().UTF8String();
  return message;
}

std::string escapedMarkup(const std::string &text) {
  char *escaped = g_markup_escape_text(text.c_str(), -1);
  std::string result = escaped;
  g_free(escaped);
  return result;
}

/// The number of the notification; nothing when it is not shown.
std::optional<std::uint32_t> notify(const SessionBus &bus, const DesktopAlert &alert, const Capabilities &can) {
  const NSString name = NSBundle::mainBundle().objectForInfoDictionaryKey(u"CFBundleName"_ns).string();
  const std::string application = name ? name.UTF8String() : "Quiverleaf";
  const std::string message = messageOf(alert, can.hasActions);
  GVariantBuilder actions;
  g_variant_builder_init(&actions, G_VARIANT_TYPE("as"));
  const bool asks = can.hasActions && !alert.buttons.empty();
  for (std::size_t i = 0; asks && i < alert.buttons.size(); ++i) {
    const std::string label = alert.buttons[i].UTF8String();
    if (i == 0) {
      g_variant_builder_add(&actions, "s", kDefaultAction.data());
      g_variant_builder_add(&actions, "s", label.c_str());
    }
    g_variant_builder_add(&actions, "s", std::to_string(i).c_str());
    g_variant_builder_add(&actions, "s", label.c_str());
  }
  const Variant answer =
      bus.call(kNotifications, "Notify",
               g_variant_new("(susssasa{sv}i)", application.c_str(), 0U, "", alert.title.UTF8String().c_str(),
                             (can.hasMarkup ? escapedMarkup(message) : message).c_str(), &actions, nullptr,
                             asks ? kNoTimeLimit : kUsualTime));
  if (!answer || !g_variant_is_of_type(answer.get(), G_VARIANT_TYPE("(u)"))) return std::nullopt;
  std::uint32_t number = 0;
  g_variant_get(answer.get(), "(u)", &number);
  return number;
}

/// What became of notifications, as far as signals tell.
struct NotificationEvents {
  std::optional<std::uint32_t> number;
  std::string action;
  bool isOver = false;

  void receive(std::string_view name, GVariant *parameters) {
    std::uint32_t which = 0;
    if (name == "NameOwnerChanged") {
      isOver = true;
    } else if (name == "ActionInvoked" && g_variant_is_of_type(parameters, G_VARIANT_TYPE("(us)"))) {
      const char *invoked = nullptr;
      g_variant_get(parameters, "(u&s)", &which, &invoked);
      if (which != number || isOver) return;
      action = invoked;
      isOver = true;
    } else if (name == "NotificationClosed" && g_variant_is_of_type(parameters, G_VARIANT_TYPE("(uu)"))) {
      std::uint32_t reason = 0;
      g_variant_get(parameters, "(uu)", &which, &reason);
      isOver |= which == number;
    }
  }
  /// Nothing when no button of so many was pressed.
  std::optional<std::size_t> button(std::size_t count) const {
    if (action == kDefaultAction) return 0;
    std::size_t index = 0;
    const char *const end = action.data() + action.size();
    const auto [stop, status] = std::from_chars(action.data(), end, index);
    return status == std::errc() && stop == end && index < count ? std::optional(index) : std::nullopt;
  }
};

/// Writes a line to the standard error; what could command a terminal becomes spaces.
void tell(std::string line) {
  for (char &c : line)
    if (static_cast<unsigned char>(c) < ' ' || c == '\x7f') c = ' ';
  // U+0080 to U+009F, some of which stand for an escape sequence's beginning.
  for (std::size_t i = 1; i < line.size(); ++i)
    if (line[i - 1] == '\xc2' && static_cast<unsigned char>(line[i]) < 0xa0) line[i - 1] = line[i] = ' ';
  writeAll(STDERR_FILENO, line + "\n");
}

}  // namespace

std::optional<std::size_t> SessionDesktop::runAlert(const DesktopAlert &alert) {
  SessionBus bus;
  const std::optional<Capabilities> can = capabilitiesOf(bus);
  NotificationEvents events;
  const bool asks = can && can->hasActions && !alert.buttons.empty();
  if (asks)
    bus.subscribe(kNotifications,
                  [&events](std::string_view name, GVariant *parameters) { events.receive(name, parameters); });
  if (can) events.number = notify(bus, alert, *can);
  if (!events.number) {
    tell(alert.title.UTF8String());
    const std::string message = messageOf(alert, false);
    if (!message.empty()) tell(message);
    return std::nullopt;
  }
  if (!asks) return std::nullopt;
  bus.wait(Deadline::after(options_.alertSeconds), [&events] { return events.isOver; });
  if (!events.isOver) bus.call(kNotifications, "CloseNotification", g_variant_new("(u)", *events.number));
  return events.button(alert.buttons.size());
}

bool SessionDesktop::openURL(const NSURL &url) {
  if (!url) return false;
  const SessionBus bus;
  if (!bus) {
    tell(url.absoluteString().UTF8String());
    return false;
  }
  const std::string address = url.absoluteString().UTF8String();
  if (bus.call(kPortal, "OpenURI", g_variant_new("(ssa{sv})", "", address.c_str(), nullptr))) return true;
  const auto tool = options_.browserTool.fileSystemRepresentation();
  if (!tool || !isProgram(*tool)) return false;
  // The system's tool that lets another one go on by itself: a browser that the tool becomes must not end with
  // a time limit, or with the pipes of this process.
  const NSTask task{.launchPath = u"/usr/bin/setsid"_ns,
                    .arguments = {u"--fork"_ns, options_.browserTool, url.absoluteString()},
                    .deadline = Deadline::after(kDetachingSeconds),
                    .standardOutput = NSTask::Output::discarded,
                    .standardError = NSTask::Output::discarded};
  const auto result = task.run();
  return result && result->terminationStatus == 0;
}

}  // namespace nimbo
