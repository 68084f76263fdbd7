#!/usr/bin/env bash
# SPDX-License-Identifier: Apache-2.0
# Runs a command where a faulty program reaches no other process and no network but its own loopback, and writes only below
# a folder and to memory:  confine.sh FOLDER COMMAND...
set -euo pipefail
if [ -z "${CONFINED_USER-}" ]; then
  namespaces=(--mount --pid --fork --kill-child --mount-proc --ipc --net)
  [ "$(id -u)" = 0 ] || namespaces+=(--user --map-root-user)
  CONFINED_USER=$(id -u):$(id -g) exec unshare "${namespaces[@]}" "$0" "$@"
fi
user=${CONFINED_USER%:*} group=${CONFINED_USER#*:} folder=$1 here=$PWD
unset CONFINED_USER
shift
for place in "$folder" /proc/sys /proc/sysrq-trigger; do
  [ ! -e "$place" ] || mount --bind "$place" "$place"
done
while read -r _ point _; do
  # What tests try with files of processes must fail as it does elsewhere.
  [ "$point" = "$folder" ] || [ "$point" = /proc ] || mount -o remount,bind,ro "$point" 2>/dev/null || true
done </proc/self/mounts
for memory in /tmp /var/tmp /dev/shm /run; do
  mount -t tmpfs -o mode=1777,size=1g none "$memory"
done
ip link set lo up
mkdir /run/home
mkdir -m 700 /run/home/run
for name in "${!XDG_@}"; do unset "$name"; done
export HOME=/run/home XDG_RUNTIME_DIR=/run/home/run
ulimit -c 0
cd "$here"  # Through what is mounted now.
[ "$user" = 0 ] || set -- unshare --user --map-user="$user" --map-group="$group" "$@"
# This shell stays the first process, which processes fall to whose parents have ended.
"$@"
