// SPDX-License-Identifier: Apache-2.0
extern "C" {
#include <libavutil/avstring.h>
#include <libavutil/log.h>
#include <libavutil/mem.h>
}

#include <algorithm>
#include <cmath>
#include <initializer_list>
#include <limits>
#include <string>
#include <utility>

#include "platform/Foundation/System/EngineLibrary.hpp"
#include "platform/QTKit/Engine/FramePixels.hpp"
#include "platform/QTKit/Engine/MovieEngine.hpp"
#include "platform/QTKit/Engine/MovieFactsOfFormat.hpp"
#include "platform/QTKit/Engine/MovieInput.hpp"
#include "platform/QTKit/Engine/PictureDecoder.hpp"
#include "platform/QTKit/Engine/PictureOrientation.hpp"
#include "platform/QTKit/Engine/QuickTimeHeader.hpp"

namespace nimbo::detail {
namespace {

/// The formats that are read. There are no still images, no subtitles alone, none that only name other files or
/// places, and none of libraries that play notes or modules.
constexpr char kFormats[] =
    "mov,matroska,avi,asf,flv,live_flv,mpeg,mpegts,mpegvideo,m4v,h261,h263,h264,hevc,vc1,obu,ivf,dv,gxf,mxf,"
    "nut,"
    "ogg,rm,rpl,swf,flic,cavsvideo,dirac,yuv4mpegpipe,mjpeg,wtv,nsv,film_cpk,bink,smk,roq,ea,mlv,pva,pmp,"
    "mp3,aac,loas,ac3,eac3,dts,dtshd,truehd,mlp,flac,wav,w64,aiff,au,caf,amr,amrnb,amrwb,ape,mpc,mpc8,wv,tta,"
    "tak,"
    "oma,aea,voc,sox,ircam,gsm,qcp,mmf,xwma,shn,dsf,iff,aax,avr,svs,3dostr,nistsphere";
/// No single piece of memory is larger: it is the largest that the frames of `kMaximumFramePixels` take.
constexpr std::size_t kMaximumAllocation = std::size_t{512} << 20;
/// No more of a file is looked at to find out what it is.
constexpr unsigned int kMaximumProbedBytes = 1 << 20;
/// What is read of the tracks before the first frame is asked for.
constexpr std::int64_t kProbedBytes = 5'000'000;
/// For so long pictures are looked for that begin too late for what FFmpeg looks at by itself.
constexpr std::int64_t kLatestPictures = std::int64_t{90} * AV_TIME_BASE;
/// Where reading begins, in seconds before the frame, until a key frame stands in between; at last at the
/// start.
constexpr double kLeadsInSeconds[] = {0, 1, 5, std::numeric_limits<double>::infinity()};

/// An index may have the times of decoding, which come so much before those of showing.
constexpr AVRational kDecodingDelay = {1, 4};

/// Frames that cannot be reached in this time are not waited for: the nearest key frame stands in.
constexpr double kExactnessInSeconds = 0.7;

/// What is added to times before their fractions of ticks are dropped.
constexpr double kRoundingInTicks = 0.01;
/// Times are at most so much behind the end that the file names, which is often not quite right.
constexpr double kSecondsBehindEnd = 1;

int refuseToOpen(AVFormatContext *, AVIOContext **, const char *, int, AVDictionary **) {
  return AVERROR(EPERM);
}

/// Says why FFmpeg did not open a file.
void setOpeningError(int code, const Deadline &deadline, NSError *error) {
  if (code == AVERROR_EXIT || deadline.isOver())
    setError(error, ErrorCode::timeLimit, "the movie was not read in time");
  else if (code == AVERROR(ENOMEM))
    setError(error, ErrorCode::memoryLimit, "the movie needs too much memory");
  else if (code == AVERROR(EIO))
    setError(error, ErrorCode::unreadable, "the file cannot be read");
  else
    setError(error, ErrorCode::damaged, "the movie is damaged, or its index is missing");
}

/// Whether what has been looked at does not tell how large the pictures are, or whether there are any.
bool mayHaveLatePictures(const AVFormatContext &format, const MovieFacts &facts) {
  if (facts.pictureTrack) return facts.tracks[*facts.pictureTrack].size == NSSize();
  return (format.ctx_flags & AVFMTCTX_NOHEADER) != 0;
}

/// Where the movie begins in the times of the file, in microseconds.
std::int64_t beginOfMovie(const AVFormatContext &format, bool tellsDuration) {
  // Durations in the headers of these count from zero, however late the tracks begin; a piece of a longer movie
  // may begin behind what it says.
  const bool countsFromZero = tellsDuration &&
                              av_match_list(format.iformat->name, "mov,matroska,nut,asf", ',') > 0 &&
                              format.start_time < format.duration;
  return countsFromZero || format.start_time == AV_NOPTS_VALUE ? 0 : format.start_time;
}

bool failAsUnknown(NSError *error) {
  setError(error, ErrorCode::unsupportedType, "the file is no movie or sound of a known kind");
  return false;
}

void setSearchError(PictureDecoder::End end, NSError *error) {
  if (end == PictureDecoder::End::deadline)
    setError(error, ErrorCode::timeLimit, "no frame of the movie was decoded in time");
  else if (end == PictureDecoder::End::gaveUp)
    setError(error, ErrorCode::tooLarge, "the movie has no picture in the part that is looked at");
  else
    setError(error, ErrorCode::damaged, "no frame of the movie can be decoded");
}

class FFmpegMovie final : public EngineMovie {
 public:
  /// False when it cannot be opened; `*error` says why.
  bool open(const std::string &name, NSError *error);
  FFmpegMovie(FileDescriptor file, std::uint64_t size, const Deadline &deadline)
      : input_(std::move(file), size, deadline) {}
  FFmpegMovie(NSData data, const Deadline &deadline) : input_(std::move(data), deadline) {}

  const MovieFacts &facts() const override { return facts_; }
  MoviePicture frameAtTime(double seconds, NSError *error) override;
  MoviePicture cover(NSError *error) override;
  void readOn(double seconds) override;

 private:
  /// Looks for all tracks in the first `duration`, in microseconds; 0 leaves it to FFmpeg. An error is below 0.
  int openFormat(const std::string &name, const AVInputFormat &inputFormat, std::int64_t duration);
  bool openDecoder(NSError *error);
  bool seekTo(std::int64_t time);
  /// For what has no index, where times may lead behind the first key frame.
  bool seekToFirstByte();
  PictureDecoder::Search searchFrom(std::int64_t from, PictureDecoder::Target target);
  std::int64_t timeOfSeconds(double seconds) const;
  /// The key frame that is nearest to `time`; `before` is the one in front of it.
  std::int64_t nearestKeyFrame(std::int64_t time, std::int64_t before) const;
  MoviePicture pictureAsShown(const AVFrame &frame, AVStream &stream, NSError *error);
  AVStream &pictureStream() const { return *format_->streams[*facts_.pictureTrack]; }

  MovieInput input_;
  FFmpegPointer<AVFormatContext> format_;
  MovieFacts facts_;
  /// In the times of the file, in microseconds.
  std::int64_t begin_ = 0;
  std::unique_ptr<PictureDecoder> decoder_;
  /// Where the file is read from has not been changed yet.
  bool isAtStart_ = true;
  /// A frame that reading on has found.
  FFmpegPointer<AVFrame> lateFrame_;
};

int FFmpegMovie::openFormat(const std::string &name, const AVInputFormat &inputFormat, std::int64_t duration) {
  format_.reset();
  if (const std::int64_t place = avio_seek(input_.context(), 0, SEEK_SET); place < 0)
    return static_cast<int>(place);
  AVFormatContext *format = avformat_alloc_context();
  if (!format) return AVERROR(ENOMEM);
  format->pb = input_.context();
  // FFmpeg opens nothing by itself: references to other files and places lead nowhere.
  format->io_open = refuseToOpen;
  format->format_whitelist = av_strdup(kFormats);
  format->protocol_whitelist = av_strdup("");
  format->probesize = kProbedBytes;
  format->max_analyze_duration = duration;
  // A failure frees the context.
  if (const int result = avformat_open_input(&format, name.c_str(), &inputFormat, nullptr); result < 0)
    return result;
  format_.reset(format);
  return avformat_find_stream_info(format, nullptr);
}

bool FFmpegMovie::open(const std::string &name, NSError *error) {
  AVIOContext *const input = input_.context();
  if (!input) {
    setError(error, ErrorCode::memoryLimit, "there is no memory for the movie");
    return false;
  }
  const AVInputFormat *inputFormat = nullptr;
  const int score = av_probe_input_buffer2(input, &inputFormat, name.c_str(), nullptr, 0, kMaximumProbedBytes);
  if (score <= AVPROBE_SCORE_RETRY || !inputFormat || av_match_list(inputFormat->name, kFormats, ',') <= 0) {
    if (!input_.deadline().isOver()) return failAsUnknown(error);
    setOpeningError(AVERROR_EXIT, input_.deadline(), error);
    return false;
  }
  const bool isQuickTime = av_match_list(inputFormat->name, "mov", ',') > 0;
  const QuickTimeHeader header = isQuickTime ? headerOfQuickTimeMovie(*input) : QuickTimeHeader();
  int result = openFormat(name, *inputFormat, 0);
  if (result >= 0) facts_ = factsOfFormat(*format_);
  if (result >= 0 && mayHaveLatePictures(*format_, facts_)) {
    result = openFormat(name, *inputFormat, kLatestPictures);
    if (result >= 0) facts_ = factsOfFormat(*format_);
  }
  // What looks like one of these by chance alone is none.
  if (result < 0 && !input_.deadline().isOver() && score < AVPROBE_SCORE_EXTENSION) return failAsUnknown(error);
  if (result < 0 || input_.deadline().isOver()) {
    setOpeningError(result, input_.deadline(), error);
    return false;
  }
  if (format_->nb_streams == 0) {
    setError(error, ErrorCode::incomplete, "the movie has no tracks");
    return false;
  }
  facts_.posterSeconds = header.posterSeconds;
  begin_ = beginOfMovie(*format_, header.tellsDuration);
  // Where the header tells none, FFmpeg's duration is the time of the end.
  if (!header.tellsDuration && begin_ > 0 && begin_ < format_->duration)
    *facts_.durationSeconds -= static_cast<double>(begin_) / AV_TIME_BASE;
  for (unsigned int i = 0; i < format_->nb_streams; ++i)
    if (i != facts_.pictureTrack) format_->streams[i]->discard = AVDISCARD_ALL;
  return true;
}

bool FFmpegMovie::openDecoder(NSError *error) {
  if (!facts_.pictureTrack) {
    setError(error, ErrorCode::unsupportedType, "the file has sound only");
    return false;
  }
  if (decoder_) return true;
  decoder_ = PictureDecoder::decoderForStream(pictureStream(), error);
  // Palettes come with the first packet alone.
  if (decoder_ && pictureStream().codecpar->format == AV_PIX_FMT_PAL8) {
    decoder_->search(*format_, {.time = timeOfSeconds(0)}, input_.deadline());
    isAtStart_ = false;
  }
  return static_cast<bool>(decoder_);
}

std::int64_t FFmpegMovie::timeOfSeconds(double seconds) const {
  const AVRational unit = pictureStream().time_base;
  const std::int64_t start = av_rescale_q(begin_, AV_TIME_BASE_Q, unit);
  // No movie is longer, and no sum overflows.
  constexpr double kFarthest = 1e15;
  const double ticks = std::max(seconds, 0.0) / av_q2d(unit);
  return start + static_cast<std::int64_t>(std::min(ticks + kRoundingInTicks, kFarthest));
}

bool FFmpegMovie::seekTo(std::int64_t time) {
  const bool isStart = time <= timeOfSeconds(0);
  if (isStart && std::exchange(isAtStart_, false)) return true;
  isAtStart_ = false;
  decoder_->flush();
  if (av_seek_frame(format_.get(), pictureStream().index, time, AVSEEK_FLAG_BACKWARD) >= 0) return true;
  return isStart && seekToFirstByte();
}

bool FFmpegMovie::seekToFirstByte() {
  decoder_->flush();
  return avformat_seek_file(format_.get(), -1, 0, 0, INT64_MAX, AVSEEK_FLAG_BYTE) >= 0;
}

PictureDecoder::Search FFmpegMovie::searchFrom(std::int64_t from, PictureDecoder::Target target) {
  PictureDecoder::Search found = decoder_->search(*format_, target, input_.deadline());
  if (!found.isBehindSkipped || found.end == PictureDecoder::End::tooFar || !seekTo(from)) return found;
  target.skips = false;
  return decoder_->search(*format_, target, input_.deadline());
}

std::int64_t FFmpegMovie::nearestKeyFrame(std::int64_t time, std::int64_t before) const {
  AVStream &stream = pictureStream();
  const AVIndexEntry *behind = avformat_index_get_entry_from_timestamp(&stream, time, 0);
  const bool isNearer = behind && behind->timestamp >= time && behind->timestamp - time < time - before;
  return isNearer ? behind->timestamp : before;
}

MoviePicture FFmpegMovie::pictureAsShown(const AVFrame &frame, AVStream &stream, NSError *error) {
  const AVRational aspect = av_guess_sample_aspect_ratio(format_.get(), &stream, const_cast<AVFrame *>(&frame));
  return turnedPicture(pictureOfFrame(frame, aspect, error), orientationOfStream(stream));
}

MoviePicture FFmpegMovie::frameAtTime(double seconds, NSError *error) {
  if (!openDecoder(error)) return {};
  if (lateFrame_) return pictureAsShown(*lateFrame_, pictureStream(), error);
  if (facts_.durationSeconds) seconds = std::min(seconds, *facts_.durationSeconds + kSecondsBehindEnd);
  const std::int64_t start = timeOfSeconds(0);
  const std::int64_t time = timeOfSeconds(seconds);
  const PictureDecoder::Target target = {.time = time, .budget = Deadline::after(kExactnessInSeconds)};
  PictureDecoder::Search found;
  // The frames of program streams mostly do not say when they are shown, which decoding those before them
  // tells.
  const bool isProgramStream = av_match_list(format_->iformat->name, "mpeg", ',') > 0;
  for (const double lead : kLeadsInSeconds) {
    if (isProgramStream && lead == 0) continue;
    const std::int64_t from = timeOfSeconds(seconds - lead);
    if (!seekTo(from)) continue;
    found = searchFrom(from, target);
    if (found.end == PictureDecoder::End::tooFar) {
      const std::int64_t near = nearestKeyFrame(time, found.begin);
      const std::int64_t delay = av_rescale_q(1, kDecodingDelay, pictureStream().time_base);
      if (seekTo(near + delay)) found = decoder_->search(*format_, {.time = near}, input_.deadline());
      if (found.frame) break;
    }
    const bool isMissed = found.isLate || (!found.frame && found.end != PictureDecoder::End::deadline);
    if (from <= start && isMissed && (format_->iformat->flags & AVFMT_TS_DISCONT) != 0 && seekToFirstByte())
      if (PictureDecoder::Search first = searchFrom(from, target); first.frame) found = std::move(first);
    const bool isOver = found.end == PictureDecoder::End::deadline || from <= start;
    if (isOver || (found.frame && !found.isLate)) break;
  }
  if (found.frame) return pictureAsShown(*found.frame, pictureStream(), error);
  setSearchError(found.end, error);
  return {};
}

void FFmpegMovie::readOn(double seconds) {
  if (!openDecoder(nullptr) || lateFrame_) return;
  const Deadline until = earliest(Deadline::after(seconds), input_.deadline());
  PictureDecoder::End end = PictureDecoder::End::gaveUp;
  while (!lateFrame_ && end == PictureDecoder::End::gaveUp) {
    PictureDecoder::Search found = decoder_->search(*format_, {.time = timeOfSeconds(0)}, until);
    lateFrame_ = std::move(found.frame);
    end = found.end;
  }
}

MoviePicture FFmpegMovie::cover(NSError *error) {
  for (std::size_t i = 0; i < facts_.tracks.size(); ++i) {
    AVStream &stream = *format_->streams[i];
    if (!facts_.tracks[i].isCover || stream.attached_pic.size <= 0) continue;
    const auto decoder = PictureDecoder::decoderForStream(stream, error);
    if (!decoder) return {};
    if (const auto frame = decoder->pictureInPacket(stream.attached_pic))
      return pictureAsShown(*frame, stream, error);
    setError(error, ErrorCode::damaged, "the cover is damaged");
    return {};
  }
  setError(error, ErrorCode::incomplete, "the file has no cover");
  return {};
}

std::unique_ptr<EngineMovie> openFile(FileDescriptor file, std::uint64_t size, const NSString &name,
                                      const Deadline &deadline, NSError *error) {
  if (size == 0) {
    setError(error, ErrorCode::incomplete, "the file is empty");
    return nullptr;
  }
  auto movie = std::make_unique<FFmpegMovie>(std::move(file), size, deadline);
  return movie->open(name.UTF8String(), error) ? std::move(movie) : nullptr;
}

std::unique_ptr<EngineMovie> openData(const NSData &data, const Deadline &deadline, NSError *error) {
  if (data.length() == 0) {
    setError(error, ErrorCode::incomplete, "the file is empty");
    return nullptr;
  }
  auto movie = std::make_unique<FFmpegMovie>(data, deadline);
  return movie->open({}, error) ? std::move(movie) : nullptr;
}

constexpr MovieEngine kEngine = {&openFile, &openData};

}  // namespace
}  // namespace nimbo::detail

NIMBO_ENGINE const void *nimboEngine() {
  av_log_set_level(AV_LOG_QUIET);
  av_max_alloc(nimbo::detail::kMaximumAllocation);
  return &nimbo::detail::kEngine;
}
