// SPDX-License-Identifier: Apache-2.0
#include "Classes/Collections/NSArray+NSStringExtensions.hpp"
#include "Classes/Collections/NSMutableArray+MSMutableArrayNimboExtensions.hpp"
#include "Classes/Movies/QTMovie+NimboQTMovieExtensions.hpp"
#include "platform/Foundation/NSHFSFileTypes.hpp"
#include "platform/Foundation/NSPathUtilities.hpp"

namespace nimbo {
inline namespace NimboQTMovieExtensions {

const NSArray &QuickTimeFileTypes() {
  static const NSArray kTypes = [] {
    NSArray types;
    for (const NSString &type : QTMovie::movieFileTypes()) types.addObject(type);
    unionWithObjects(
        types,
        {u"'MPG '"_ns, u"mpg"_ns,    u"mpeg"_ns,   u"m4a"_ns,    u"mp4"_ns,    u"mp3"_ns,    u"m3u"_ns,
         u"m4p"_ns,    u"avi"_ns,    u"swf"_ns,    u"flv"_ns,    u"qt"_ns,     u"mid"_ns,    u"midi"_ns,
         u"au"_ns,     u"wav"_ns,    u"aif"_ns,    u"aiff"_ns,   u"3gp"_ns,    u"3g2"_ns,    u"3gpp"_ns,
         u"flc"_ns,    u"'VfW '"_ns, u"m1s"_ns,    u"MQV"_ns,    u"'MPGA'"_ns, u"'.WAV'"_ns, u"'amr '"_ns,
         u"m75"_ns,    u"'cdda'"_ns, u"'qhtm'"_ns, u"'mpg4'"_ns, u"'rtsp'"_ns, u"mqv"_ns,    u"'hmov'"_ns,
         u"'grip'"_ns, u"m1v"_ns,    u"m2v"_ns,    u"'DIVX'"_ns, u"bwf"_ns,    u"'SMIL'"_ns, u"'mxfd'"_ns,
         u"pls"_ns,    u"qtpf"_ns,   u"cel"_ns,    u"'sdp '"_ns, u"gsm"_ns,    u"dvd"_ns,    u"'sdv '"_ns,
         u"mpa"_ns,    u"qht"_ns,    u"'PLAY'"_ns, u"'SWFL'"_ns, u"'3gp2'"_ns, u"'attr'"_ns, u"m15"_ns,
         u"'MPG3'"_ns, u"'M1V '"_ns, u"amr"_ns,    u"adts"_ns,   u"aac"_ns,    u"sdp"_ns,    u"'MPGa'"_ns,
         u"'FLI '"_ns, u"atr"_ns,    u"skin"_ns,   u"'MPGx'"_ns, u"dif"_ns,    u"smil"_ns,   u"'adts'"_ns,
         u"m4b"_ns,    u"rtsp"_ns,   u"'3gpp'"_ns, u"'SwaT'"_ns, u"'amc '"_ns, u"3gp2"_ns,   u"sdv"_ns,
         u"'embd'"_ns, u"m1a"_ns,    u"'caff'"_ns, u"swa"_ns,    u"mpm"_ns,    u"sd2"_ns,    u"'dvc!'"_ns,
         u"'MPG2'"_ns, u"cdda"_ns,   u"'MP3 '"_ns, u"'.SMI'"_ns, u"'MPGV'"_ns, u"smf"_ns,    u"'M1A '"_ns,
         u"'GSM '"_ns, u"vfw"_ns,    u"fli"_ns,    u"smi"_ns,    u"mpv"_ns,    u"dv"_ns,     u"caf"_ns,
         u"m2a"_ns,    u"kar"_ns,    u"'Sd2f'"_ns, u"mp2"_ns,    u"amc"_ns,    u"sml"_ns,    u"'MPEG'"_ns,
         u"'DAVI'"_ns, u"'AIFC'"_ns, u"qtz"_ns,    u"qhtm"_ns,   u"'Midi'"_ns, u"'MPGv'"_ns, u"m4v"_ns});
    return types;
  }();
  return kTypes;
}

bool isQuickTimeExtension(const NSString &extension, const NSString &type) {
  return containsStringNoCase(QuickTimeFileTypes(), extension) || containsString(QuickTimeFileTypes(), type);
}

bool isQuickTimeFile(const NSString &path) {
  return isQuickTimeExtension(pathExtension(path), NSHFSTypeOfFile(path));
}

}  // namespace NimboQTMovieExtensions
}  // namespace nimbo
