# Compares what was counted with what is stored, path by path; fails unless they are the same paths
# and each is within the tolerance, which is as strict downwards: a figure that is too high would let
# the next regression pass.
#
#     awk -f judge.awk STORED MEASURED    two files of lines "NAME INSTRUCTIONS"; # begins a comment

BEGIN { tolerance = 3 }

/^#/ || NF == 0 { next }

NF != 2 || $2 !~ /^[0-9]+$/ || $2 == 0 {
    printf "%s: \"%s\" is not a name and a number of instructions\n", FILENAME, $0
    wrong++
    next
}

FILENAME == ARGV[1] { stored[$1] = $2; names[++count] = $1; next }

{
    measured[$1] = $2
    if (!($1 in stored))
        names[++count] = $1
}

END {
    printf "%-20s %12s %12s %10s\n", "path", "stored", "measured", "difference"
    for (i = 1; i <= count; i++) {
        name = names[i]
        if (!(name in measured)) {
            verdict = "not measured"
            difference = ""
        } else if (!(name in stored)) {
            verdict = "not stored"
            difference = ""
        } else {
            change = (measured[name] - stored[name]) * 100
            difference = sprintf("%+.2f %%", change / stored[name])
            verdict = change > tolerance * stored[name] ? "too many" \
                : change < -tolerance * stored[name] ? "fewer: lower the stored figure" : ""
        }
        if (verdict == "")
            within++
        else
            wrong++
        line = sprintf("%-20s %12s %12s %10s  %s", name, stored[name], measured[name], difference, verdict)
        sub(/ +$/, "", line)
        print line
    }
    printf "%d of %d paths within %d %%\n", within, count, tolerance
    exit (wrong > 0 || count == 0)
}
