// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/Foundation/Connection/ConnectionRecord.hpp"
#include "platform/Foundation/Flag.hpp"
#include "platform/Foundation/NSError.hpp"
#include "platform/Foundation/System/Deadline.hpp"
#include "platform/Foundation/id.hpp"

namespace NIMBO_PUBLIC nimbo {

/// Calls the helper over its named connection. Starts one when none is registered, gives every call a time
/// limit, and replaces a helper that died or hangs. The helper says when it begins a request: only a request
/// that has begun can fail with the helper, and one that has not is sent again to the next helper. So a bad
/// document, a crash or a kill costs one request, whoever else waits. Used from one thread at a time.
///
/// Relative paths that an operation is given count from this process's working directory; when that is gone,
/// the request is invalid. The empty path stays empty, and "~" is a name like any other. An operation answers
/// nil when it could not do its work.
///
///     HelperClient helper;
///     const HelperClient::Answer answer = helper.metaDataForFile(u"letter.pdf"_ns);
///     if (answer.status != HelperClient::Status::answered) NSLog(answer.message);
///     const NSString title = answer.result.dictionary().objectForKey(u"kMDItemTitle"_ns).string();
class HelperClient {
 public:
  /// How long a page that becomes rich text waits for its style sheets and images.
  static constexpr double kPageLoadSeconds = 15.0;

  /// How a client finds and treats the helper.
  struct Options {
    /// The name of the connection; nil stands for the one of the helper's contract. A helper program that is
    /// started has to register under it.
    NSString name;
    /// How long the work on one call may take, reply included, from the moment that the helper begins it. A
    /// page has `kPageLoadSeconds` more, in which it waits for its parts.
    double timeoutSeconds = 15.0;
    /// How long a call may wait for its beginning: while other callers are served, while a helper starts.
    double waitingSeconds = 300.0;
    /// Whether a helper is started when none is registered.
    bool startsHelper = true;
    /// Whether a helper that let a call time out is ended, so that the next call meets a fresh one. It is not
    /// when it works for somebody else; one that begins nothing though it has nothing to do is.
    bool endsHungHelper = true;
    /// A helper that is started ends after so many minutes in which nobody asked for anything; 0 is never.
    double idleMinutes = 10.0;
    /// The helper program; a relative path counts from the working directory in which the client is made. An
    /// empty one stands for `$QUIVERLEAF_HELPER`, else the helper of this library's own prefix or that of the
    /// running program, else the one that was installed with this library, else "quiverleaf-helper" in
    /// `$PATH`.
    std::string helperPath;
  };

  /// How a call ended.
  enum class Status {
    answered,     ///< `result` is the answer; `reason` and `code` say why it is not whole, if so.
    nil,          ///< The operation answered nil; `reason` and `code` say why.
    exception,    ///< The operation raised; `exceptionName` and `exceptionReason` say what.
    timedOut,     ///< Not begun, or no reply, within the time limit; `message` says which, and of what it is.
    died,         ///< The helper ended, or closed the connection, after it had begun the request.
    unreachable,  ///< No helper is registered and none could be started, or none lived until it began.
    invalid       ///< The request cannot be sent; `message` says why.
  };

  /// What came of a call.
  struct Answer {
    /// How the call ended, which says what else is there.
    Status status = Status::unreachable;
    /// The answer of the operation; nil unless `answered`.
    id result;
    /// The exception's name, for programs; nil unless `exception`.
    NSString exceptionName;
    /// The exception's reason, for people; nil unless `exception`.
    NSString exceptionReason;
    /// Why the answer is nil, or why it is not whole, for people; nil when the helper does not say it.
    NSString reason;
    /// The same for programs, which take an unknown code for `other`; `none` when the helper does not say it.
    ErrorCode code = ErrorCode::none;
    /// Why there is no answer, in UTF-8; empty when there is one.
    std::string message;
  };

  /// A client with the options as they stand above.
  HelperClient();
  /// A client with these options. Neither of both connects: the first call does.
  explicit HelperClient(Options options);
  /// Closes the connection; a helper that the client started lives on.
  ~HelperClient();
  /// Takes the other's connection over; the other must not be used any more but to assign to it.
  HelperClient(HelperClient &&) noexcept;
  /// As the constructor; its own connection is closed.
  HelperClient &operator=(HelperClient &&) noexcept;

  /// Calls an operation by its full selector; `arguments` are keyed by its keywords, and those that are nil
  /// left out. Paths among them have to be absolute, since the helper has a working directory of its own.
  Answer call(const NSString &selector, const NSDictionary &arguments);

  /// The metadata of a file: a dictionary by kMDItem names, without null values.
  Answer metaDataForFile(const NSString &path);
  /// The text of a web archive: a dictionary with "String", and with "Source", the markup of the page, and
  /// "URL" when they are known; empty, with a reason, for what is no web archive.
  Answer searchableTextOfWebArchive(const NSString &path);
  /// The text and facts of a PDF: a dictionary with "String" (RTFD data with `attributed`), "PageCount",
  /// "Locked" when it needs a password, and the document's own attributes.
  Answer attributedStringWithPDF(Flag attributed, const NSData &pdf);
  /// A document as rich text: a dictionary with "Rtfd", its RTFD data, and "DocumentAttributes".
  Answer attributedStringWithContentsOfFile(const NSString &path);
  /// Writes RTFD data as a file package, and answers whether it was written; nil counts as not.
  Answer writeRTFDData(const NSData &rtfd, const NSString &toFile);
  /// A page as RTFD data. `baseURL`, an absolute URL, completes the relative ones in it. What the page refers
  /// to is loaded from beyond the local network only with `allowRemoteRequest`.
  Answer RTFDWithHTML(const NSData &html, const NSString &baseURL, Flag allowRemoteRequest);
  /// A file that is PDF or PostScript, as PDF data.
  Answer PDFImageRepOfFile(const NSString &path);
  /// A frame of a movie: a dictionary with "Duration" in seconds, "Size" in points, as "{640, 360}", and, when
  /// there is a frame, "Thumbnail", its TIFF data in that size.
  Answer posterImageForMovieWithFile(const NSString &path);
  /// The picture of an image, a PDF or PostScript: a dictionary with "Thumbnail", TIFF data of at most 256
  /// pixels a side. An image has "Properties" besides, what the file says of itself; other files, and all with
  /// `stringFromPDF`, have "Size" in points, "PixelSize" and "Alpha". With `stringFromPDF`, of PDF and
  /// PostScript, what `attributedStringWithPDF` answers, too; with `canUseSpotlight` the metadata importers are
  /// asked for the text first.
  Answer imageWithContentsOfFile(const NSString &path, Flag stringFromPDF, Flag canUseSpotlight);

  /// The text and facts of a PDF, or of some of its pages, as `attributedStringWithPDF` answers them. The
  /// options, none of which has to be there: "Password", a string; "FirstPage" and "LastPage", numbers from 1
  /// on; "Attributed"; "ByPage", with which the answer has "Pages", an array with a string for each page, in
  /// place of "String".
  Answer stringWithPDF(const NSData &pdf, const NSDictionary &options);

  /// What is known of the helper, whether it answers or works.
  struct State {
    /// Whether it still serves the name. Else the record is what it left when it ended.
    bool isRunning = false;
    /// What it does at the moment, or did last.
    ConnectionRecord record = {};
  };

  /// A request in words, as "/a/letter.doc (metaDataForFile:) for process 123".
  static std::string describedRequest(const ConnectionRecord &record);

  /// Looks at what the helper has written down, and does not wait for it. Nothing when there never was one.
  std::optional<State> helperState() const;

  /// The process number of the helper, started if need be; 0 when there is none, and `*failure` then says why.
  int helperProcessIdentifier(Answer *failure = nullptr);
  /// Ends the helper that is registered (without starting one) when its request under way is done, and waits
  /// until it is gone; one that is not gone after 2 seconds is killed. False when there is none.
  bool stopHelper();

 private:
  struct Session;

  Answer callWithFile(const NSString &selector, const NSString &keyword, const NSString &path,
                      NSDictionary otherArguments = NSDictionary::dictionary());
  bool connect(Flag startsHelper, const Deadline &waiting, Answer *failure);
  bool connectOnce(Flag startsHelper, const Deadline &waiting, Answer *failure);
  std::string programToStart(std::string *message) const;
  std::vector<std::string> helperArguments() const;
  bool ask(std::int64_t serial, const std::vector<NSData> &request, const Deadline &waiting, Answer *answer);
  bool endSession();
  Answer endTimedOut();
  Answer endUnbegun();
  Answer endDied(std::string message);

  Options options_;
  std::unique_ptr<Session> session_;
  std::int64_t serial_ = 0;
  /// How long the work on the present call may take.
  double workSeconds_ = 0;
};

}  // namespace nimbo
