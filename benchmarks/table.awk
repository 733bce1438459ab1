# Turns the lines of the benchmarks, subject|unit|side|value|target, into a table. The exit status is 1
# if something was not measured, or was missed that does not depend on time.

function shown(value, unit) {
    if (unit == "ns")
        return value >= 1e6 ? sprintf("%.2f ms", value / 1e6) \
             : value >= 1e3 ? sprintf("%.1f µs", value / 1e3) : sprintf("%.0f ns", value)
    if (unit == "bytes")
        return sprintf("%.0f KiB", value / 1024)
    return value >= 1e6 ? sprintf("%.2f million %s", value / 1e6, unit) : sprintf("%d %s", value, unit)
}

BEGIN { FS = "|" }

{
    row = $1 FS $2
    if (!(row in target))
        rows[++count] = row
    target[row] = $5
    value[row, $3] = $4
}

END {
    for (i = 1; i <= count; ++i) {
        row = rows[i]
        split(row, name, FS)
        ours = value[row, "ours"]
        floor = value[row, "floor"]
        goal = target[row]
        if (!ours || !floor) {
            print "Not measured: " name[1] ", " name[2] > "/dev/stderr"
            failed = 1
            continue
        }
        sum = sprintf("%.2f", ours / floor)
        if (goal ~ /^[+]/) {
            missed = ours - floor > goal + 0
            sum = sprintf("%+d KiB", (ours - floor) / 1024)
            goal = sprintf("+%d KiB", goal / 1024)
        } else {
            missed = goal != "" && ours / floor > goal + 0
        }
        # Times depend on what else the machine does.
        failed = failed || missed && name[2] != "ns"
        if (!(name[1] in lines))
            subjects[++told] = name[1]
        lines[name[1]] = lines[name[1]] sprintf("| %s | %s | %s | %s | %s |\n", name[1], \
            shown(ours, name[2]), shown(floor, name[2]), sum, missed ? goal ", missed" : goal)
    }
    print "| Subject | This project | Floor | Ratio | Target |"
    print "|---|---|---|---|---|"
    for (i = 1; i <= told; ++i)
        printf "%s", lines[subjects[i]]
    exit failed
}
