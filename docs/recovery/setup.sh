# Sourced by every answer of the page on recovery: the array "databases" on disks 0 to 2, and used.json, in which three
# disks hold the array "old" of another adapter.
. "$TESTDIR/../../tests/transcripts/setup.sh"
used='"disks": [{"count": 3, "type": "SAS", "size": "1TB"}],
  "arrays": [{"name": "old", "level": "RAID5", "disks": [0, 1, 2], "virtualDisks": [{"name": "mail"}]}]'
own='"battery": true, "disks": [{"count": 4, "type": "SAS", "size": "1TB"}],
  "arrays": [{"name": "databases", "level": "RAID5", "disks": [0, 1, 2], "virtualDisks": [{"name": "orders"}]}]'
echo "{\"adapters\": [{$used}]}" > used.json
echo "{\"adapters\": [{$own}]}" > lab.json
lab lab.json
