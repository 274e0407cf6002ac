# Compares fields of packets with a table of what is right, which is read first. A row: camera, message, which,
# field, value. All but the value are patterns, and the last row that fits a field counts. It fails for a field
# without a row, and for a row without a field: so the table cannot fall behind. A value is a pattern, FROM..TO
# for times, or "any:" and the reason why nothing is compared. A field that a packet has several times has all
# its values, with commas.
#
# The fields come from PDML, which follows the table; the file that is loaded after this one says what is compared
# in each packet, and with right_value() what other values mean.

function fault(text) {
    print text
    ++num_faults
}

function fits(text, pattern) { return text ~ ("^(" pattern ")$") }

function number(hex,    i, value) {
    value = 0
    for (i = 3; i <= length(hex); ++i) value = value * 16 + index("0123456789abcdef", substr(hex, i, 1)) - 1
    return value
}

# ---- The table ----------------------------------------------------------------------------------

# The row for a field of a message; 0 for none.
function row_for(camera, message, which, field,    key, i) {
    key = camera SUBSEP message SUBSEP which SUBSEP field
    if (key in known_row) return known_row[key]
    for (i = num_rows; i > 0; --i)
        if (fits(field, row_field[i]) && fits(camera, row_camera[i]) && fits(message, row_message[i]) &&
            fits(which, row_which[i])) break
    return known_row[key] = i
}

function is_right(value, right,    ends) {
    if (right ~ /^any:/) return 1
    if (split(right, ends, /\.\./) == 2) return value >= ends[1] && value <= ends[2]
    return fits(value, right)
}

function compare(camera, message, which, field, value,    row, right) {
    row = row_for(camera, message, which, field)
    is_used[row] = 1
    right = row ? right_value(row_value[row], field, which) : "none: there is no row for it"
    if (!is_right(value "", right))
        fault(camera " " message " " which ": " field " = " substr(value, 1, 80) ", not " right)
}

NR == FNR {
    if ($0 ~ /^ *(#.*)?$/) next
    ++num_rows
    row_camera[num_rows] = $1 == "*" ? ".*" : $1
    row_message[num_rows] = $2
    row_which[num_rows] = $3
    row_field[num_rows] = $4
    row_text[num_rows] = $0
    sub(/^[^ ]+ +[^ ]+ +[^ ]+ +[^ ]+ */, "")
    row_value[num_rows] = $0
    next
}

# ---- Packets ------------------------------------------------------------------------------------

function attribute(name,    begin, rest) {
    begin = index($0, " " name "=\"")
    if (!begin) return ""
    rest = substr($0, begin + length(name) + 3)
    return substr(rest, 1, index(rest, "\"") - 1)
}

/<packet>/ {
    split("", show)
    num_fields = 0
}

/<proto name="/ { protocol = attribute("name") }

# Of UDP, tshark says that a port is one of traceroute, and aravis takes any port.
protocol ~ /^(gvcp|gvsp|_ws\.malformed)$/ && /<field name="_ws.expert.message"/ {
    add_field("complaint", attribute("show"))
}

/<field name="(gv|ip\.src"|ip\.dst"|ip\.flags\.df"|udp\.(src|dst)port"|udp\.length"|udp\.payload"|frame\.(number|time_epoch)")/ {
    name = attribute("name")
    add_field(name, attribute(name ~ /(data|payload)$/ ? "value" : "show"))
}

function add_field(name, text) {
    if (!(name in show)) {
        show[name] = text
        field[++num_fields] = name
    } else if (name != "gvcp.response_to") {
        show[name] = show[name] "," text
    }
}

# At the end: whether there was a fault.
function table_failed(    i) {
    for (i = 1; i <= num_rows; ++i)
        if (!(i in is_used)) fault("nothing fits the row: " row_text[i])
    return num_faults != 0
}
