#!/bin/sh
# SPDX-License-Identifier: Apache-2.0
# SPDX-FileCopyrightText: 2026 The Sorvane developers
#
# Makes the files of this folder: a sine of 440 Hz at half of full scale, 0.4 s long unless the name says
# otherwise, in each container and codec. They are committed; run this only to add one.
set -e
cd "$(dirname "$0")"

# tone NAME RATE CHANNELS [encoder options]
tone() {
    name=$1 rate=$2 channels=$3
    shift 3
    ffmpeg -v error -y -bitexact -f lavfi -i "aevalsrc='0.5*sin(2*PI*440*t)':c=$channels:s=$rate:d=${seconds:-0.4}" \
        -fflags +bitexact -flags +bitexact "$@" "$name"
}

tone 8-bit.wav 8000 mono -c:a pcm_u8
tone 16-bit.wav 8000 mono -c:a pcm_s16le
tone 24-bit.wav 8000 mono -c:a pcm_s24le
tone 32-bit.wav 8000 mono -c:a pcm_s32le
tone float.wav 8000 mono -c:a pcm_f32le
tone double.wav 8000 mono -c:a pcm_f64le
tone a-law.wav 8000 mono -c:a pcm_alaw
tone mu-law.wav 8000 mono -c:a pcm_mulaw
tone rf64.wav 8000 mono -rf64 always
tone wave64.w64 8000 mono
tone stereo.wav 8000 stereo -c:a pcm_s16le
seconds=0.1 tone six-channels-extensible.wav 16000 5.1 -c:a pcm_s24le
seconds=0.05 tone studio-rate.wav 192000 mono -c:a pcm_s16le
tone core-audio.caf 8000 mono -c:a pcm_s16be
tone big-endian.aiff 8000 mono
tone lossless.flac 44100 stereo -c:a flac
tone lossless-in-ogg.oga 44100 mono -c:a flac
tone apple-lossless.m4a 44100 mono -c:a alac
tone layer-3.mp3 44100 stereo -c:a libmp3lame -b:a 64k
tone layer-3-without-header.mp3 22050 mono -c:a libmp3lame -b:a 32k -write_xing 0 -id3v2_version 0
tone advanced.m4a 44100 mono -c:a aac -b:a 48k
tone advanced-fragmented.mp4 44100 mono -c:a aac -b:a 48k -movflags frag_keyframe+empty_moov
tone advanced-raw.aac 44100 mono -c:a aac -b:a 48k
tone advanced.mkv 44100 mono -c:a aac -b:a 48k
tone advanced.ts 44100 mono -c:a aac -b:a 48k
tone vorbis.ogg 44100 mono -c:a libvorbis -q:a 1
tone vorbis.webm 44100 mono -c:a libvorbis -q:a 1
tone opus.opus 48000 mono -c:a libopus -b:a 32k
tone opus.webm 48000 stereo -c:a libopus -b:a 32k
tone opus-without-duration.webm 48000 mono -c:a libopus -b:a 32k -live 1
tone windows-media.wma 44100 mono -c:a wmav2 -b:a 48k
tone surround.ac3 48000 5.1 -c:a ac3 -b:a 192k

# A video with sound: the picture is the first stream.
for video in video.mp4 video.mkv; do
    ffmpeg -v error -y -f lavfi -i "color=size=16x16:rate=5:duration=0.4" \
        -f lavfi -i "aevalsrc='0.5*sin(2*PI*440*t)':s=44100:d=0.4" \
        -c:v mpeg4 -c:a aac -b:a 48k -fflags +bitexact -flags +bitexact -bitexact "$video"
done
ffmpeg -v error -y -f lavfi -i "color=size=16x16:rate=5:duration=0.4" -c:v mpeg4 -fflags +bitexact -bitexact silent-film.mp4
