# Sourced by .ci/run and scripts/check-all: runs their parts and prints at the end the time that each took.

part_times=()

# part NAME COMMAND...: returns the exit code of the command.
part() {
    local name=$1 start=$SECONDS code=0
    shift
    echo "== $name: $*"
    "$@" || code=$?
    local seconds=$((SECONDS - start)) result=passed
    [ $code -eq 0 ] || result=FAILED
    part_times+=("$(printf '| %-14s | %3d:%02d | %s |' "$name" $((seconds / 60)) $((seconds % 60)) $result)")
    return $code
}

print_part_times() {
    printf '\n| part           | min:s  | result |\n| -------------- | ------ | ------ |\n'
    [ ${#part_times[@]} -eq 0 ] || printf '%s\n' "${part_times[@]}"
    printf '| all            | %3d:%02d | |\n' $((SECONDS / 60)) $((SECONDS % 60))
}
trap print_part_times EXIT
