#!/bin/sh
# The commerce service app of the virtual appliance, as a launch handler:
#
#   commerce-service.sh --app-id ID --operation OP --uri URI [--extra KEY=VALUE]...
#
# A search request (extras key_merchant and key_search_term) is answered as
# the appliance's service answers it: the result goes into the data store's
# "Commerce" row, then db/orvane/e-commerce/response is written (with the
# search term as its value) to tell that the answer is there.
#
# What the search finds is set per device in $MARL_DEVICE_DIR/commerce-service/answer,
# lines of KEY=VALUE:
#
#   totalCount=N    the text written to the row's "totalCount"
#   delay=SECONDS   optional: how long the search takes before the answer
#
# Without that file, or without a totalCount line in it, the app never
# answers. What the app did is printed to its handler log.
#
# vconftool is taken from PATH, else from the bin/ folder of the build whose
# file-system map is preloaded (marl-sim and the tests preload it).

merchant=
term=
while [ $# -gt 0 ]; do
    case $1 in
        --extra)
            case $2 in
                key_merchant=*) merchant=${2#key_merchant=} ;;
                key_search_term=*) term=${2#key_search_term=} ;;
            esac
            shift 2 ;;
        *) shift ;;
    esac
done

answer="$MARL_DEVICE_DIR/commerce-service/answer"
count=
delay=
if [ -f "$answer" ]; then
    while IFS= read -r line || [ -n "$line" ]; do
        case $line in
            totalCount=*) count=${line#totalCount=} ;;
            delay=*) delay=${line#delay=} ;;
        esac
    done < "$answer"
fi

echo "commerce-service: search for \"$term\" at \"$merchant\""
if [ -z "$count" ]; then
    echo "commerce-service: no answer set in $answer; not answering"
    exit 0
fi

vconftool=$(command -v vconftool)
if [ -z "$vconftool" ]; then
    for preloaded in $(echo "$LD_PRELOAD" | tr ':' ' '); do
        case $preloaded in
            */lib/libvappliance-fsmap.so) vconftool="${preloaded%/lib/*}/bin/vconftool" ;;
        esac
    done
fi
if [ ! -x "$vconftool" ]; then
    echo "commerce-service: vconftool not found; not answering"
    exit 1
fi

[ -n "$delay" ] && sleep "$delay"

# The row gets the count, made first when the store has no such row yet.
db="$MARL_DEVICE_DIR/datastore.db"
quoted=$(printf '%s' "$count" | sed "s/'/''/g")
sqlite3 "$db" 'CREATE TABLE IF NOT EXISTS Commerce ("totalCount")' || exit 1
sqlite3 "$db" 'SELECT "totalCount" FROM Commerce LIMIT 0' 2>/dev/null ||
    sqlite3 "$db" 'ALTER TABLE Commerce ADD COLUMN "totalCount"' || exit 1
sqlite3 "$db" "UPDATE Commerce SET totalCount = '$quoted';
               INSERT INTO Commerce (totalCount) SELECT '$quoted' WHERE NOT EXISTS (SELECT 1 FROM Commerce)" || exit 1
echo "commerce-service: totalCount is now \"$count\""

"$vconftool" set -t string db/orvane/e-commerce/response "$term" || exit 1
echo "commerce-service: answered"
