# privateBus.sh - sourced by the scripts here: they go on in a $folder of their own, with a bus and
# places for a user's files in it, all gone at their end.
folder=$(mktemp -d)
trap 'kill $(jobs -p) 2>/dev/null; wait; rm -rf "$folder"' EXIT
cd "$folder"
export XDG_STATE_HOME=$folder XDG_RUNTIME_DIR=$folder
dbus-daemon --session --nofork --print-address 1 >address 2>/dev/null &
until [ -s address ]; do sleep 0.01; done
DBUS_SESSION_BUS_ADDRESS=$(cat address)
export DBUS_SESSION_BUS_ADDRESS
