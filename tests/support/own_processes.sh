#!/bin/sh
# Runs a test program where it sees only its own processes: in a PID namespace of its own,
# with its own /proc (and its own mounts, which go with it). A kzServerconsole of the
# machine, or of a second test run beside this one, then changes nothing. Where namespaces
# are not allowed, the program runs as it is and KZ_NO_OWN_PROCESSES says why; the tests
# that depend on which processes exist then skip themselves.
if why=$(unshare --pid --fork --mount-proc true 2>&1); then
  exec unshare --pid --fork --mount-proc --kill-child "$@"
fi
KZ_NO_OWN_PROCESSES="no PID namespace of its own (unshare: ${why:-not allowed})" exec "$@"
