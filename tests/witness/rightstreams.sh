# shellcheck shell=bash disable=SC2034,SC2154  # a part of scripts/witness
# What tshark must read in the packets of streams, in the form of right.sh. Which: the port that they go to,
# or "-", which aravis chose; of refused packets also their ids, and of blocks their id.

# scsp has the source ports of the streams, as literal datagrams read them.
right_streams() {
    local packet='.*(LEADER|DATA|TRAILER|ALLIN|REFUSED|TEST)' resent='RESENT_(LEADER|DATA|TRAILER)'
    cat <<END
MONO $packet .* udp.srcport ${scsp[MONO]}
PACKED $packet .* udp.srcport ${scsp[PACKED]}
COLOUR $packet .* udp.srcport ${scsp[COLOUR]}
BAYER $packet .* udp.srcport ${scsp[BAYER]}
BAYER $packet 21012 udp.srcport ${scsp[SECOND]}
* $packet .* ip.flags.df 0
* TEST - ip.flags.df any: aravis changes it while it looks for the largest size
MONO $packet 2.* ip.flags.df 1

# ---- Headers ----
* $packet .* gvsp.status 0x0000
* $resent .* gvsp.status 0x0100
MONO REFUSED .* gvsp.status 0x800c
BAYER REFUSED 21013.1.1 gvsp.status 0x8011
* $packet .* gvsp.flags 0x0000
* $resent .* gvsp.flags 0x0001
MONO REFUSED 21003.1.5 gvsp.flags 0x0004
* $packet .* gvsp.flag[.].* 0x0000
* $resent .* gvsp.flag.packetresend 0x0001
MONO REFUSED 21003.1.5 gvsp.flag.resendrangeerror 0x0001
* .*LEADER .* gvsp.format 0x01
* .*TRAILER .* gvsp.format 0x02
* .*DATA|TEST|REFUSED .* gvsp.format 0x03
* ALLIN .* gvsp.format 0x04
COLOUR .*LEADER .* gvsp.format 0x81
COLOUR .*TRAILER .* gvsp.format 0x82
COLOUR .*DATA .* gvsp.format 0x87
COLOUR .*LEADER|.*TRAILER .* gvsp.numparts 2
MONO LEADER 21003 gvsp.format 0x81
MONO TRAILER 21003 gvsp.format 0x82
MONO .*DATA 21003 gvsp.format 0x83
MONO REFUSED 21003.* gvsp.format 0x83
MONO ALLIN 21004 gvsp.format 0x84

# ---- Ids: those of blocks are compared below ----
* $packet .* gvsp.(block|packet)id.* any: of the blocks below, or said by which
* TEST .* gvsp.(block|packet)id.* 0
* .*LEADER .* gvsp.packetid.* 0
* ALLIN .* gvsp.packetid.* 0
* ALLIN .* gvsp.blockid.* 1
MONO RESENT_.* 2000. gvsp.blockid16 2
MONO RESENT_DATA 20003 gvsp.packetid24 [12]
MONO RESENT_TRAILER 20005 gvsp.packetid24 23
MONO RESENT_DATA 21003 gvsp.packetid32 [12]
BAYER RESENT_DATA 21012 gvsp.blockid16 1
BAYER RESENT_DATA 21012 gvsp.packetid24 [12]
MONO RESENT_DATA 20003 messages 2
MONO RESENT_LEADER 20004 messages 1
MONO RESENT_TRAILER 20005 messages 1
MONO REFUSED 20006.2.24 messages 1
MONO REFUSED 20007.9.1 messages 1
MONO REFUSED 21003.1.5 messages 1
MONO REFUSED 21003.9.1 messages 1
BAYER REFUSED 21013.1.1 messages 1
MONO RESENT_DATA 21003 messages 2
BAYER RESENT_DATA 21012 messages 2
MONO TEST 21001 messages 1
MONO TEST 21001 udp.length 556
* TEST .* gvsp.payloaddata any: it has no meaning

# ---- Leaders and trailers ----
* .*LEADER|ALLIN .* gvsp.field(info|id|count) 0x00
* .*LEADER|.*TRAILER .* gvsp.payloadtype 0x0001
* ALLIN .* gvsp.payloadtype 0x0001,0x0001
COLOUR .*LEADER|.*TRAILER .* gvsp.payloadtype 0x000a
BAYER .*LEADER|.*TRAILER .* gvsp.payloadtype 0x4001
* .*LEADER|ALLIN .* gvsp.timestamp any: see BLOCK
MONO .*LEADER|ALLIN 2.* gvsp.timestamp 0x$begun..0x$ended
MONO .*LEADER|ALLIN .* gvsp.pixel 0x01080001
PACKED .*LEADER .* gvsp.pixel 0x010c0047
COLOUR .*LEADER .* gvsp.pixel 0x02180015
BAYER .*LEADER .* gvsp.pixel 0x01080009
* .*LEADER|ALLIN .* gvsp.pixel.color 0x00000001
COLOUR .*LEADER .* gvsp.pixel.color 0x00000002
MONO|BAYER .*LEADER|ALLIN .* gvsp.pixel.occupy 8
PACKED .*LEADER .* gvsp.pixel.occupy 12
COLOUR .*LEADER .* gvsp.pixel.occupy 24
MONO .*LEADER|ALLIN .* gvsp.pixel.id 0x00000001
PACKED .*LEADER .* gvsp.pixel.id 0x00000047
COLOUR .*LEADER .* gvsp.pixel.id 0x00000015
BAYER .*LEADER .* gvsp.pixel.id 0x00000009
* .*LEADER .* gvsp.sizex 320
PACKED .*LEADER .* gvsp.sizex 322
MONO LEADER 21003 gvsp.sizex 32
MONO ALLIN .* gvsp.sizex 32
MONO|BAYER .*LEADER|.*TRAILER .* gvsp.sizey 100
PACKED|COLOUR .*LEADER|.*TRAILER .* gvsp.sizey 240
MONO ALLIN .* gvsp.sizey 32,32
* .*LEADER|ALLIN .* gvsp.(offset|padding)[xy] 0
MONO .*LEADER|ALLIN 2.* gvsp.offsetx 16
MONO .*LEADER|ALLIN 2.* gvsp.offsety 8
PACKED .*LEADER .* gvsp.paddingx 5
BAYER .*TRAILER .* gvsp.chunkdatapayloadlengthhex 0x00007d34
BAYER .*TRAILER .* gvsp.chunklayoutidhex any: the camera names its layouts

# ---- Multi-part: the image, and a chunk of 8 bytes with its tag ----
COLOUR .*LEADER|.*TRAILER .* gvsp.multipartdatatype 0x0001,0x000a
COLOUR .*LEADER|.*TRAILER .* gvsp.partlength 0x0000000000038400,0x0000000000000010
COLOUR .*LEADER .* gvsp.(sourceid|multipartaddzones) 0x00,0x00
COLOUR .*LEADER .* gvsp.zonedirection 0x00000000,0x00000000
COLOUR .*LEADER .* gvsp.zone[0-9]+direction 0,0
# tshark calls two zones so.
COLOUR .*LEADER .* gvsp.zone1direction 0,0,0,0
COLOUR .*LEADER .* gvsp.datapurposeid 0x0001,0x0000
COLOUR .*LEADER .* gvsp.regionid 0x0000,0x0000
COLOUR .*LEADER .* gvsp.dataformat 0x00000000
COLOUR .*LEADER|.*TRAILER .* gvsp.datatypespecific 0x00000000(,0x00000000)*
COLOUR .*DATA .* gvsp.partid 0x0[01]
COLOUR .*DATA .* gvsp.zoneid 0x00
COLOUR .*DATA .* gvsp.multipartzoneinfo 0x[04]0
COLOUR .*DATA .* gvsp.endofpart [01]
COLOUR .*DATA .* gvsp.endofzone 0
COLOUR .*DATA .* gvsp.addressoffset any: see BLOCK

# ---- Blocks ----
* .*DATA .* gvsp.payloaddata any: see BLOCK
* BLOCK .* follows 1
* BLOCK .* later 1
* BLOCK .* lacking 0
* BLOCK .* (trailer|time|last) any: of some blocks below
* BLOCK -.last (lacking|later|bytes|ends) any: aravis stops in the midst of it
* RESENT_DATA .* same 1
COLOUR BLOCK .* offsets 1
COLOUR BLOCK .*[0-9] ends ,2/0x00,1/0x01
MONO BLOCK .*[0-9] bytes 32000
MONO BLOCK 21003.1 bytes 3200
MONO ALLIN .* gvsp.payloaddata any: its length is in that of the datagram
MONO ALLIN 21002 udp.length 1084
MONO ALLIN 21004 udp.length 1096
PACKED BLOCK .*[0-9] bytes 117120
COLOUR BLOCK .*[0-9] bytes 230416
BAYER BLOCK .*[0-9] bytes 32052
MONO BLOCK 21001.[123] trailer 23
MONO BLOCK 21003.1 trailer 4
BAYER BLOCK 2101[13].[12] trailer 23
BAYER BLOCK 21012.[12] trailer 61
PACKED BLOCK 21021.[12] trailer 81
MONO BLOCK 21001.3 last 1
BAYER BLOCK 2101[123].2 last 1
PACKED BLOCK 21021.2 last 1
PACKED BLOCK 21021.2 time 0x$scheduled..0x7fffffffffffffff
END
}
