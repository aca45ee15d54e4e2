# Makes the manual page of a program out of what its --help prints, by Qt or by Python's argparse. The
# test manual_pages compares the pages here with the programs; scripts/update-goldens.sh stores them
# again.
#
#     rivo-grid --help | awk -f manual.awk > rivo-grid.1

# escaped(TEXT): the text as groff has to read it.
function escaped(text) {
    gsub(/\\/, "\\e", text)
    gsub(/-/, "\\-", text)
    return text ~ /^[.']/ ? "\\&" text : text
}

# verbatim(IS): begins or ends lines that keep their breaks.
function verbatim(is) {
    if (is != isVerbatim)
        print is ? ".PP\n.nf" : ".fi"
    isVerbatim = is
}

# The first sentence is also the summary of the page.
function beginDescription(summary) {
    sub(/[.:].*/, "", summary)
    printf ".SH NAME\n%s \\- %s\n", escaped(program), escaped(tolower(substr(summary, 1, 1)) substr(summary, 2))
    printf ".SH SYNOPSIS\n.B %s\n%s\n.SH DESCRIPTION\n", escaped(program), escaped(arguments)
    part = "description"
}

NR == 1 {
    program = $2
    sub(/.*\//, "", program)
    arguments = $0
    sub(/^[^ ]* [^ ]* /, "", arguments)
    printf ".\\\" Made from what %s --help prints: see manual.awk.\n", program
    printf ".TH %s 1 \"\" \"Rivo GuiCore\" \"Rivo GuiCore\"\n", toupper(escaped(program))
    next
}

# A long command line goes on, and ends with a blank line.
part == "" && /^ / {
    sub(/^ +/, " ")
    arguments = arguments $0
    next
}

part == "" {
    if ($0 == "")
        next
    beginDescription($0)
}

/^([Oo]ptions|Arguments):$/ {
    verbatim(0)
    part = "list"
    print ".SH " toupper(substr($0, 1, length($0) - 1))
    next
}

part == "list" && /^  [^ ]/ && match($0, /[^ ]  +/) {
    printf ".TP\n.B %s\n", escaped(substr($0, 3, RSTART - 2))
    $0 = substr($0, RSTART + RLENGTH)
}

part == "list" && /^  [^ ]/ {
    printf ".TP\n.B %s\n", escaped(substr($0, 3))
    next
}

part == "list" {
    sub(/^ +/, "")
    if ($0 != "")
        print escaped($0)
    next
}

$0 == "" {
    verbatim(0)
    print ".PP"
    next
}

{
    verbatim($0 ~ /^ /)
    print escaped($0)
}
