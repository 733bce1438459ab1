# Turns Google Benchmark's CSV into a table of the shortest times. These are CPU times, or durations
# that a benchmark measured itself. The exit status is 1 if a row is incomplete or there is no row, else
# 2 if a target was missed.

function shown(ns) {
    return ns >= 1e6 ? sprintf("%.2f ms", ns / 1e6) \
         : ns >= 1e3 ? sprintf("%.1f µs", ns / 1e3) : sprintf("%.0f ns", ns)
}

BEGIN { FS = "," }

# The columns: "name/side",iterations,real time,CPU time,unit,,,"target",,
/^"[^"]*\/(ours|floor)/ && !/_(mean|median|stddev|cv)"/ {
    gsub(/"/, "")
    split($1, name, "/")
    if (!(name[1] in target))
        subjects[++count] = name[1]
    if (name[2] == "ours" || !(name[1] in target))
        target[name[1]] = $8
    time = /manual_time/ ? $3 : $4
    if (!((name[1], name[2]) in best) || time < best[name[1], name[2]])
        best[name[1], name[2]] = time
}

END {
    print "| Subject | This project | Floor | Ratio | Target |"
    print "|---|---|---|---|---|"
    for (i = 1; i <= count; ++i) {
        ours = best[subjects[i], "ours"]
        floor = best[subjects[i], "floor"]
        if (!ours || !floor) {
            print "Not measured: " subjects[i] > "/dev/stderr"
            failed = 1
            continue
        }
        goal = target[subjects[i]]
        missed = goal != "" && ours / floor > goal + 0
        anyMissed = anyMissed || missed
        printf "| %s | %s | %s | %.2f | %s |\n", subjects[i], shown(ours), shown(floor),
               ours / floor, missed ? goal ", missed" : goal
    }
    exit failed || !count ? 1 : anyMissed ? 2 : 0
}
