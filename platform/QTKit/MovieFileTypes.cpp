// SPDX-License-Identifier: Apache-2.0
#include "platform/QTKit/QTMovie.hpp"

namespace nimbo {

const std::vector<NSString> &QTMovie::movieFileTypes() {
  static const std::vector<NSString> kTypes = {
      // MPEG-4 and its kin.
      u"mov"_ns, u"qt"_ns, u"mqv"_ns, u"mp4"_ns, u"m4v"_ns, u"m4a"_ns, u"m4b"_ns, u"m4p"_ns, u"m4r"_ns,
      u"f4v"_ns, u"3gp"_ns, u"3gpp"_ns, u"3g2"_ns, u"3gp2"_ns, u"mj2"_ns, u"mjp2"_ns, u"'MooV'"_ns,
      u"'mpg4'"_ns, u"'M4V '"_ns, u"'M4A '"_ns, u"'M4B '"_ns, u"'3gpp'"_ns, u"'3gp2'"_ns,
      // Other containers of pictures.
      u"avi"_ns, u"divx"_ns, u"vfw"_ns, u"mkv"_ns, u"mk3d"_ns, u"mka"_ns, u"webm"_ns, u"ogv"_ns, u"ogm"_ns,
      u"ogx"_ns, u"flv"_ns, u"wmv"_ns, u"asf"_ns, u"wtv"_ns, u"rm"_ns, u"rmvb"_ns, u"mxf"_ns, u"gxf"_ns,
      u"nut"_ns, u"nsv"_ns, u"swf"_ns, u"fli"_ns, u"flc"_ns, u"bik"_ns, u"smk"_ns, u"roq"_ns, u"ivf"_ns,
      u"y4m"_ns, u"mjpeg"_ns, u"mjpg"_ns, u"'VfW '"_ns, u"'FLI '"_ns, u"'SWFL'"_ns,
      // MPEG and DV.
      u"mpg"_ns, u"mpeg"_ns, u"mpe"_ns, u"m1v"_ns, u"m2v"_ns, u"mpv"_ns, u"m75"_ns, u"m15"_ns, u"vob"_ns,
      u"ts"_ns, u"mts"_ns, u"m2ts"_ns, u"m2t"_ns, u"dv"_ns, u"dif"_ns, u"h264"_ns, u"264"_ns, u"hevc"_ns,
      u"h265"_ns, u"265"_ns, u"'MPEG'"_ns, u"'MPG '"_ns, u"'MPGV'"_ns, u"'M1V '"_ns, u"'dvc!'"_ns,
      // Sound.
      u"mp3"_ns, u"mp2"_ns, u"mp1"_ns, u"mpa"_ns, u"m1a"_ns, u"m2a"_ns, u"aac"_ns, u"adts"_ns, u"ac3"_ns,
      u"eac3"_ns, u"dts"_ns, u"flac"_ns, u"oga"_ns, u"ogg"_ns, u"opus"_ns, u"spx"_ns, u"wav"_ns, u"wave"_ns,
      u"bwf"_ns, u"w64"_ns, u"aif"_ns, u"aiff"_ns, u"aifc"_ns, u"au"_ns, u"snd"_ns, u"caf"_ns, u"amr"_ns,
      u"awb"_ns, u"gsm"_ns, u"qcp"_ns, u"wma"_ns, u"ra"_ns, u"ape"_ns, u"mpc"_ns, u"wv"_ns, u"tta"_ns,
      u"tak"_ns, u"voc"_ns, u"dsf"_ns, u"oma"_ns, u"aax"_ns, u"8svx"_ns, u"'MP3 '"_ns, u"'MPG3'"_ns,
      u"'WAVE'"_ns, u"'.WAV'"_ns, u"'AIFF'"_ns, u"'AIFC'"_ns, u"'ULAW'"_ns, u"'caff'"_ns, u"'adts'"_ns,
      u"'amr '"_ns};
  return kTypes;
}

}  // namespace nimbo
