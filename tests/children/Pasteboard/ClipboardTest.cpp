// SPDX-License-Identifier: Apache-2.0
//
// The program that talks to the clipboard, among clients that do what they should not.
#include <gtest/gtest.h>
#include <signal.h>

#include <atomic>
#include <future>

#include "platform/AppKit/Pasteboard/PasteboardFeed.hpp"
#include "platform/Foundation/System/InstalledProgram.hpp"
#include "tests/children/Pasteboard/X11Client.hpp"
#include "tests/support/DesktopSession.hpp"

namespace nimbo {
namespace {

using Request = xcb_selection_request_event_t;

/// The exit code and what was written.
std::string run(const std::vector<std::string> &arguments, const std::string &input = "") {
  NSTask task{
      .launchPath = NSString::stringWithFileSystemRepresentation(installedProgram("quiverleaf-pasteboard")),
      .standardInput = NSData::dataWithBytes(input.data(), input.size()),
      .deadline = Deadline::after(60),
      .maximumOutputBytes = 600 << 20,
      .standardOutput = NSTask::Output::collected};
  for (const std::string &argument : arguments)
    task.arguments.push_back(NSString::stringWithUTF8String(argument));
  const auto result = task.run();
  if (!result) return "does not end";
  return std::to_string(result->terminationStatus) + " " + std::string(result->standardOutput.view());
}

std::string record(const std::string &name, const std::string &data) {
  const PasteboardRecord numbers = {static_cast<std::uint32_t>(name.size() + 1),
                                    static_cast<std::uint32_t>(data.size())};
  return std::string(reinterpret_cast<const char *>(&numbers), sizeof numbers) + name + "\n" + data;
}

class X11Clipboard : public testing::Test {
 protected:
  void SetUp() override {
    std::string missing;
    session_ = DesktopSession::start(DesktopSession::Kind::X11, &missing);
    if (!session_ && !missing.empty()) GTEST_SKIP() << missing << " is not installed";
    ASSERT_TRUE(session_) << "the desktop does not start";
  }
  /// What the program does while a client owns the clipboard that gives "x" for all targets but what `answer`,
  /// which is told a target, has answered itself.
  template <class Answer>
  std::string readFrom(X11Client &owner, Answer answer, const std::string &seconds) const {
    owner.own("CLIPBOARD");
    auto result = std::async(std::launch::async, [&seconds] { return run({"read", seconds, "x/a", "x/b"}); });
    while (result.wait_for(std::chrono::seconds(0)) != std::future_status::ready) {
      const auto event = owner.wait(XCB_SELECTION_REQUEST, 0.02);
      if (!event) continue;
      const auto &request = reinterpret_cast<const Request &>(*event);
      const std::string target = owner.nameOf(request.target);
      if (!answer(request, target)) continue;
      if (target == "TARGETS")
        owner.set(request.requestor, request.property, "ATOM", 32, owner.atoms({"TARGETS", "x/b"}));
      else
        owner.set(request.requestor, request.property, target, 8, "x");
      owner.answer(request, request.property);
    }
    return result.get();
  }

  std::unique_ptr<DesktopSession> session_;
};

class Clipboard : public testing::TestWithParam<DesktopSession::Kind> {};
INSTANTIATE_TEST_SUITE_P(Desktops, Clipboard,
                         testing::Values(DesktopSession::Kind::X11, DesktopSession::Kind::Wayland),
                         testing::PrintToStringParamName());

TEST_P(Clipboard, OutlivesOwnersThatStopAndDie) {
  std::string missing;
  const auto session = DesktopSession::start(GetParam(), &missing);
  if (!missing.empty()) GTEST_SKIP() << missing << " is not installed";
  ASSERT_TRUE(session) << "the desktop does not start";
  session->copy("never given", "x/a");
  const auto owners = session->processes(GetParam() == DesktopSession::Kind::X11 ? "xclip" : "wl-copy");
  ASSERT_EQ(owners.size(), 1);
  ::kill(owners.front(), SIGSTOP);
  EXPECT_EQ(run({"read", "0.4", "x/a"}), "8 ");
  auto reading = std::async(std::launch::async, [] { return run({"read", "20", "x/a"}); });
  EXPECT_TRUE(session->isRunning("quiverleaf-pasteboard"));
  ::kill(owners.front(), SIGKILL);
  EXPECT_EQ(reading.get(), "10 ");
  EXPECT_TRUE(session->isGone("quiverleaf-pasteboard"));
}

TEST(WaylandClipboard, ReadsWhatAnOwnerGivesBeforeItEnds) {
  std::string missing;
  const auto session = DesktopSession::start(DesktopSession::Kind::Wayland, &missing);
  if (!missing.empty()) GTEST_SKIP() << missing << " is not installed";
  ASSERT_TRUE(session) << "the desktop does not start";
  // How soon its end is heard of varies.
  for (int i = 0; i < 20; ++i) {
    session->copy("once", "x/a", {"--paste-once"});
    EXPECT_EQ(run({"read", "20", "x/a"}), "0 x/a\nonce");
  }
}

TEST_F(X11Clipboard, EndsInTimeWhateverTheOwnerDoes) {
  enum class Fault {
    none,
    noTargets,
    manyTargets,
    tooManyTargets,
    refusal,
    silence,
    otherProperty,
    noProperty,
    wrongTargets,
    death,
    replacement,
    replacementBehindTargets,
    deathInTheMiddle,
    silenceInTheMiddle,
    endless,
    lie
  };
  constexpr std::string_view kTimeLimit = "8 ";
  constexpr struct {
    Fault fault;
    std::string_view result;
  } kCases[] = {
      {Fault::none, "0 x/b\nx"},
      {Fault::noTargets, "0 x/a\nx"},
      {Fault::manyTargets, "0 x/b\nx"},
      {Fault::tooManyTargets, "4 "},
      {Fault::refusal, "10 "},
      {Fault::silence, kTimeLimit},
      {Fault::otherProperty, "10 "},
      {Fault::noProperty, "10 "},
      {Fault::replacement, "0 x/b\nnew"},
      {Fault::replacementBehindTargets, "0 x/a\nnew"},
      {Fault::wrongTargets, "10 "},
      {Fault::death, "10 "},
      {Fault::deathInTheMiddle, "10 "},
      {Fault::silenceInTheMiddle, kTimeLimit},
      {Fault::endless, kTimeLimit},
      {Fault::lie, "10 "},
  };
  for (const auto &one : kCases) {
    X11Client owner;
    const auto answer = [&owner, &one](const Request &request, const std::string &target) {
      const bool isData = target != "TARGETS";
      const auto sendPieces = [&](std::uint32_t size, int count, auto atEnd) {
        owner.watch(request.requestor);
        owner.set(request.requestor, request.property, "INCR", 32,
                  {reinterpret_cast<const char *>(&size), sizeof size});
        owner.answer(request, request.property);
        // The program takes the number above first, and then each in turn.
        for (int i = 0; i < count && owner.waitUntilTaken(); ++i)
          owner.set(request.requestor, request.property, target, 8, "y");
        atEnd();
      };
      switch (one.fault) {
        case Fault::noTargets:
          if (!isData) owner.answer(request, XCB_ATOM_NONE);
          return isData;
        case Fault::manyTargets:
        case Fault::tooManyTargets: {
          if (isData) return true;
          std::string all = owner.atoms({"TARGETS", "MULTIPLE"});
          for (int i = one.fault == Fault::manyTargets ? 0 : -1; i < 2048; ++i) all += owner.atoms({"x/b"});
          owner.set(request.requestor, request.property, "ATOM", 32, all);
          owner.answer(request, request.property);
          return false;
        }
        case Fault::refusal:
          owner.answer(request, XCB_ATOM_NONE);
          return false;
        case Fault::silence:
          return false;
        case Fault::otherProperty:
          if (isData) owner.answer(request, owner.atom("WM_NAME"));
          return !isData;
        case Fault::noProperty:
          if (isData) owner.answer(request, request.property);
          return !isData;
        case Fault::wrongTargets:
          if (isData) return true;
          owner.set(request.requestor, request.property, "INTEGER", 8, "\xff\xff\xff\x7f\0\0\0\0abc");
          owner.answer(request, request.property);
          return false;
        case Fault::death:
          ::xcb_destroy_window(owner.connection(), owner.window());
          ::xcb_flush(owner.connection());
          return false;
        case Fault::replacement:
          EXPECT_EQ(run({"own", "5", "x/b"}, record("x/b", "new")), "0 ");
          ::xcb_destroy_window(owner.connection(), owner.window());
          ::xcb_flush(owner.connection());
          return false;
        case Fault::replacementBehindTargets:
          EXPECT_EQ(run({"own", "5", "x/a"}, record("x/a", "new")), "0 ");
          return true;
        case Fault::deathInTheMiddle:
          if (isData)
            sendPieces(100, 3, [&owner] {
              ::xcb_destroy_window(owner.connection(), owner.window());
              ::xcb_flush(owner.connection());
            });
          return !isData;
        case Fault::silenceInTheMiddle:
          if (isData) sendPieces(2, 3, [] {});
          return !isData;
        case Fault::endless:
          if (isData) sendPieces(1, INT32_MAX, [] {});
          return !isData;
        case Fault::lie:
          if (isData)
            sendPieces(UINT32_MAX, 2, [&] {
              if (owner.waitUntilTaken()) owner.set(request.requestor, request.property, target, 8, "");
            });
          return !isData;
        default:
          return true;
      }
    };
    const bool endsByTime = one.result == kTimeLimit;
    EXPECT_EQ(readFrom(owner, answer, endsByTime ? "0.4" : "20"), one.result) << static_cast<int>(one.fault);
  }
}

TEST_F(X11Clipboard, AnswersAsTheConventionsSay) {
  ASSERT_EQ(
      run({"own", "5", "UTF8_STRING", "TEXT", "x/never"}, record("UTF8_STRING", "u") + record("TEXT", "t")),
      "0 ");
  const X11Client client;
  std::string type;
  const auto ask = [&](std::string_view target, xcb_timestamp_t time = XCB_CURRENT_TIME) -> std::string {
    client.ask("CLIPBOARD", target, "ANSWER", time);
    const auto event = client.wait(XCB_SELECTION_NOTIFY);
    if (!event) return "nothing";
    const bool isRefused =
        reinterpret_cast<const xcb_selection_notify_event_t &>(*event).property == XCB_ATOM_NONE;
    return isRefused ? "refused" : client.take("ANSWER", &type);
  };
  EXPECT_EQ(ask("TARGETS"), client.atoms({"TARGETS", "MULTIPLE", "TIMESTAMP", "SAVE_TARGETS", "UTF8_STRING",
                                          "TEXT", "x/never"}));
  EXPECT_EQ(type, "ATOM");
  EXPECT_EQ(ask("TEXT"), "t");
  EXPECT_EQ(type, "UTF8_STRING");
  EXPECT_EQ(ask("x/never"), "refused");
  EXPECT_EQ(ask("x/other"), "refused");
  const std::string time = ask("TIMESTAMP");
  EXPECT_EQ(type, "INTEGER");
  ASSERT_EQ(time.size(), sizeof(xcb_timestamp_t));
  xcb_timestamp_t since = 0;
  std::memcpy(&since, time.data(), sizeof since);
  EXPECT_EQ(ask("UTF8_STRING", since), "u");
  EXPECT_EQ(ask("UTF8_STRING", since - 1), "refused");
  EXPECT_EQ(ask("MULTIPLE"), "refused");
  client.set(client.window(), client.atom("ANSWER"), "ATOM_PAIR", 32,
             client.atoms({"UTF8_STRING", "A", "x/other", "B", "TEXT", "C", "TEXT"}));
  EXPECT_EQ(ask("MULTIPLE"), client.atoms({"UTF8_STRING", "A", "x/other", "", "TEXT", "C", "TEXT"}));
  EXPECT_EQ(client.take("A") + client.take("B") + client.take("C"), "ut");
}

TEST_F(X11Clipboard, OutlivesThoseWhoAsk) {
  const std::string bytes(8 << 20, 'a');
  ASSERT_EQ(run({"own", "5", "x/a"}, record("x/a", bytes)), "0 ");
  {
    const X11Client vanishing, sleeping;
    for (const X11Client *const client : {&vanishing, &sleeping}) {
      client->ask("CLIPBOARD", "x/a", "ANSWER");
      ASSERT_TRUE(client->wait(XCB_SELECTION_NOTIFY));
      client->take("ANSWER");
      ASSERT_TRUE(client->wait(XCB_PROPERTY_NOTIFY));
    }
  }
  EXPECT_TRUE(session_->paste("x/a") == bytes);
  // Nobody is being sent anything any more, so that it ends at once when it owns nothing.
  session_->copy("other", "x/b");
  EXPECT_TRUE(session_->isGone("quiverleaf-pasteboard"));
}

TEST_F(X11Clipboard, HandsOverToAClipboardManager) {
  for (const bool hasManager : {false, true}) {
    const X11Client manager;
    if (hasManager) manager.own("CLIPBOARD_MANAGER");
    ASSERT_EQ(run({"own", "5", "x/a", "x/never"}, record("x/a", "saved")), "0 ");
    const auto owners = session_->processes("quiverleaf-pasteboard");
    ASSERT_EQ(owners.size(), 1);
    ::kill(owners.front(), SIGTERM);
    if (hasManager) {
      const auto event = manager.wait(XCB_SELECTION_REQUEST);
      ASSERT_TRUE(event);
      const auto &request = reinterpret_cast<const Request &>(*event);
      EXPECT_EQ(manager.nameOf(request.target), "SAVE_TARGETS");
      manager.ask("CLIPBOARD", "x/a", "SAVED");
      ASSERT_TRUE(manager.wait(XCB_SELECTION_NOTIFY));
      EXPECT_EQ(manager.take("SAVED"), "saved");
      EXPECT_FALSE(session_->processes("quiverleaf-pasteboard").empty());
      manager.answer(request, request.property);
    }
    EXPECT_TRUE(session_->isGone("quiverleaf-pasteboard"));
  }
}

}  // namespace
}  // namespace nimbo
