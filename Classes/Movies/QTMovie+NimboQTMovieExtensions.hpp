// SPDX-License-Identifier: Apache-2.0
//
// The frame that stands for a movie, times and sizes in plain numbers, and what counts as a movie. One thread
// uses a movie at a time.
//
//     NSDictionary attributes;
//     const NSImage poster = thumbnailImageForMovieWithFile(path, &attributes, Deadline::after(8), &error);
//     if (poster) NSLog(attributes.objectForKey(u"QTMovieNaturalSizeAttribute"_ns).string());
#pragma once

#include "platform/AppKit/Images/NSImage.hpp"
#include "platform/Foundation/NSArray.hpp"
#include "platform/QTKit/QTMovie.hpp"

namespace NIMBO_PUBLIC nimbo {
inline namespace NimboQTMovieExtensions {

/// The frame that stands for the movie of a file, in its natural size; nil when there is none, `*error` says
/// why. What comes late is waited for a moment longer. `*attributes` gets the movie's attributes, also when
/// there is no frame; nil when the file cannot be opened.
NSImage thumbnailImageForMovieWithFile(const NSString &path, NSDictionary *attributes, const Deadline &deadline,
                                       NSError *error = nullptr);
/// The same without attributes.
NSImage thumbnailImageForMovieWithFile(const NSString &path, const Deadline &deadline,
                                       NSError *error = nullptr);
/// The movie's `middleImage`; nil as above.
NSImage middleImageForMovieWithFile(const NSString &path, const Deadline &deadline, NSError *error = nullptr);
/// The movie's `posterImage`; nil as above.
NSImage posterImageForMovieWithFile(const NSString &path, const Deadline &deadline, NSError *error = nullptr);

/// `middleImage`, or the movie's `posterImage` when that is nil.
NSImage thumbnailImage(QTMovie &movie, NSError *error = nullptr);
/// The frame at half the duration in whole seconds, but no later than at 15; at 0 when the duration is unknown.
NSImage middleImage(QTMovie &movie, NSError *error = nullptr);

/// The current time, in seconds.
double movieTime(const QTMovie &movie);
/// Sets it.
void setMovieTime(QTMovie &movie, double seconds);
/// In seconds; 0 when it is unknown.
double movieDuration(const QTMovie &movie);
/// In points; zero without pictures.
NSSize movieSize(const QTMovie &movie);

/// File name extensions and type codes (as "'MooV'") of what counts as a movie or sound: what can be opened,
/// then others.
const NSArray &QuickTimeFileTypes();
/// Whether these have the extension, without regard to case, or the type code, exactly.
bool isQuickTimeExtension(const NSString &extension, const NSString &type);
/// The same of the path's extension and the file's type code.
bool isQuickTimeFile(const NSString &path);

}  // namespace NimboQTMovieExtensions
}  // namespace nimbo
