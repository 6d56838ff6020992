#!/usr/bin/env bash
# Prints a message with 200 environments: a group of eight hosts, each with containers and virtual machines.
#   samples/world.sh | hbx env put -
# The same each time, so that a page or a test can name one of them.
set -euo pipefail

NONE=00000000-0000-0000-0000-000000000000
RUNNING=6 DOWN=3 SUSPENDED=5 MOUNTED=4 REPAIRING=7
GREEN=0 YELLOW=1 RED=2

# eid GROUP HOST GUEST
eid() { printf '5e7a0000-%04d-4000-8000-%04d%08d' "$1" "$2" "$3"; }

# entry TYPE EID PARENT STATE RESOURCE_ALERT BACKUP_ALERT CONFIGURATIONS
entry() {
    printf '<entry><env_type>%s</env_type><env><eid>%s</eid><parent_eid>%s</parent_eid>' "$1" "$2" "$3"
    printf '<status><state>%s</state></status>' "$4"
    printf '<alert_type>%s</alert_type>' "$5" 0 "$6" 0 0
    printf '%s</env></entry>\n' "$7"
}

host() {
    local name=$1
    printf '<env_config><name>%s</name><host_name>%s.example</host_name><domain>example</domain></env_config>' \
        "$name" "$name"
}

guest() {
    local name=$1
    printf '<env_config><host_name>%s.example</host_name></env_config>' "$name"
    printf '<virtual_config><name>%s</name></virtual_config>' "$name"
}

# print_guest HOST NUMBER: most run quietly; a few do not, at places that look like chance.
print_guest() {
    local host=$1 number=$2 mix=$(((host * 31 + number * 17) % 29)) type=container
    local state=$RUNNING resource=$GREEN backup=$GREEN name
    local roles=(web db mail cache build proxy queue store)
    case $mix in
        3 | 11) state=$DOWN ;;
        7) state=$SUSPENDED ;;
        13) state=$MOUNTED ;;
        19) state=$REPAIRING backup=$RED ;;
        5 | 17) resource=$YELLOW ;;
        23) resource=$RED ;;
    esac
    ((number % 3 != 0)) || type=virtual_machine
    name=$(printf '%s-%d%02d' "${roles[number % 8]}" "$host" "$number")
    entry "$type" "$(eid 2 "$host" "$number")" "$(eid 1 "$host" 0)" "$state" "$resource" "$backup" \
        "$(guest "$name")"
}

echo '<message xmlns:hbx="urn:hbx:message" hbx:v="1"><data>'
entry group "$(eid 0 0 0)" $NONE $RUNNING $GREEN $GREEN "$(host west)"
for host in 1 2 3 4 5 6 7 8; do
    entry host "$(eid 1 $host 0)" "$(eid 0 0 0)" $RUNNING $GREEN $GREEN "$(host "node-$host")"
    for ((number = 1; number <= (host == 8 ? 23 : 24); number++)); do
        print_guest $host "$number"
    done
done
echo '</data></message>'
