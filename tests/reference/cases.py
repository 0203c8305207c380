"""The small inputs, each named for what it claims. Run it to write them to ../data/convert/inputs."""

import os
import sys

INPUTS = os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "data", "convert", "inputs")


def tables():
    both = lambda text: {"big": b"\xFE\xFF" + text.encode("utf-16-be"), "little": b"\xFF\xFE" + text.encode("utf-16-le")}
    marked = "n\u00e4me,\u00d8re,\u65e5\u672c\n1,\u00d8,\u8a9e\n2.5,\"a,\"\"b\"\"\nc\",\r\n-3,,x\r\n"
    inner_mark = "a\ufeffb,c\ufffed\n1,\"x\ufeffy\"\n"
    return {
        "two_columns.csv": b"a,b\n1,x\n2,y\n",
        "no_line_end_at_the_end.csv": b"a,b\n1,x\n2,y",
        "carriage_returns_and_line_feeds.csv": b"a,b\r\n1,x\r\n2,y\r\n",
        "carriage_returns_alone.csv": b"a,b\r1,x\r2,y\r",
        "line_feeds_before_carriage_returns.csv": b"a,b\n\r1,x\n\r2,y\n\r",
        "blank_lines_are_skipped.csv": b"a,b\n\n1,x\n\n\n\n2,y\n\n",
        "header_cut_at_the_first_empty_name.csv": b"a,,b\n1,2,3\n4,5,6\n",
        "header_ends_in_a_comma.csv": b"a,b,\n1,2,3\n",
        "quoted_empty_name_cuts_the_header.csv": b'a,"",b\n1,2,3\n',
        "same_name_twice.csv": b"a,a\n1,2\n",
        "long_row_loses_its_surplus.csv": b"a,b\n1,2,3,4\n5,x,y\n",
        "short_row_is_filled.csv": b"a,b,c\n1\n2,3\n4,5,z\n",
        "only_commas_in_a_row.csv": b"a,b\n,\n,,,\n1,2\n",
        "quoted_empty_cell_is_a_row.csv": b'a\n""\n\n5\n',
        "empty_column_is_numeric.csv": b"a,b\n,x\n,y\n",
        "one_text_makes_the_column_text.csv": b"a\n1\n-2.50\n\nx\n1e3\n,7\n",
        "cells_in_quotes.csv": b'a,b\n"1","x,y"\n"2.5","say ""hi"""\n"-3",""""\n',
        "line_breaks_in_quotes.csv": b'"a\nb",c\n"1\r\n2",x\n"3\n\n4","y\n"\n',
        "text_behind_a_closing_quote.csv": b'a,b\n"x"y,"1"2\n"p"q"r",3\n',
        "delimiter_behind_a_closing_quote_ends_the_field.csv": b'a,b,c\n"p"q"r,s",t\n',
        "quote_inside_a_field_opens_a_quotation_for_lines_only.csv": b'a,b,c\nx"y\nz,u"v,w\n1,2,3\n',
        "blank_before_a_quote_is_no_quote.csv": b'a,b,c\n "x,y",z\n',
        "quotation_without_end.csv": b'a,b\n1,"x\n2,y\n',
        "quotation_ends_in_a_doubled_quote.csv": b'a,b\n1,"x""',
        "escapes.csv": b'na\\me,"q""t",b\n"\ta\bb\x0cf\\n\n","\r\n",\\\n/,\x7f,"c:\\""d"\n',
        "control_character_is_refused.csv": b"a\nx\x01y\n",
        "control_character_in_a_name_is_refused.csv": b"a\x1fb\n1\n",
        "bytes_that_are_no_utf_8.csv": b"n\xe4me,b\n\xff,\xc3\n\x80x,\xed\xa0\x80\n",
        "percent_signs.csv": b"100%s %d,%n\n1,%s\n",
        "decimals.csv": b"a,b,c,d\n9.95,0.1,12.5,-12.25\n0.30000000000000004,123.4,5.678,100\n10.0,1.0,2.50,3.000\n",
        "sixteen_digits.csv": b"a\n0.1234567890123456789\n1234567890.123456789\n123456789012345678\n"
                              b"9007199254740993\n9999999999999999\n99999999999999999\n-0.3333333333333333333\n",
        "negative_zero.csv": b"a,b,c\n-0,-0.0,0\n,-0e5,+0\n",
        "positive_exponents.csv": b"a\n1e16\n1e15\n1e21\n1.5e20\n1.25e100\n-1e+300\n2E2\n1e+05\n123456789012345680000\n"
                                  b"1.0e30\n",
        "largest_double.csv": b"a\n1.7976931348623157e308\n-1.7976931348623157e308\n",
        "small_number_is_refused.csv": b"a\n0.0001\n0.00001\n",
        "small_number_with_two_digits_of_exponent_is_refused.csv": b"a\n1.5e-12\n",
        "small_number_with_three_digits_of_exponent_passes.csv": b"a\n1e-123\n-2.5e-115\n3e-290\n",
        "small_number_with_a_zero_in_the_exponent_is_refused.csv": b"a\n1e-103\n",
        "spellings_of_numbers.csv": b"a,b,c,d,e,f\n+5,.5,5.,0x1F,0x1.8p1,\t 7\n-.25,1E+2,  3,-0XA,0x.8,\v\f1\n",
        "near_misses_of_numbers.csv": b"a,b,c,d,e,f,g,h,i\n1 ,1e,0x,- 5,1_000,1.2.3,.,+, \n",
        "thousands_and_words.csv": b'a,b,c\n"1,000",1.0f,one\n',
        "beyond_the_range_is_text.csv": b"a,b,c\n1e400,-1e999,1e-400\n",
        "infinity_is_a_number_and_refused.csv": b"a\ninf\n",
        "not_a_number_is_a_number_and_refused.csv": b"a\nNaN\n",
        "infinity_beside_text_is_text.csv": b"a\n-Infinity\nnan(7)\nx\n",
        "long_names_are_cut_in_rows_only.csv": b"x" * 1021 + b"," + b"y" * 1022 + b"," + b"z" * 1023 + b"," + b"w" * 1100
                                               + b"\n1,2,3,4\n",
        "row_number_of_two_digits_is_cut.csv": b"n" * 1021 + b"\n" + b"1\n" * 11,
        "long_name_is_cut_before_it_is_escaped.csv": b'"' + b'""' * 1022 + b'"\n1\n',
        "long_name_is_cut_inside_a_letter.csv": b"\xc3\xa4" * 512 + b"\n1\n",
        "names_count_on_over_columns.csv": b"a,b,c\n" + b"".join(b"%d,%d,t%d\n" % (i, i * i, i) for i in range(7)),
        "lengths_of_strings.csv": b"a\n" + b"\n".join([b'""', b"x", b"y" * 9, b"y" * 10, b"y" * 99, b"y" * 100, b'"\t"']),
        "mark_of_utf_8.csv": b"\xEF\xBB\xBFa,b\n1,x\n",
        "mark_of_utf_8_alone.csv": b"\xEF\xBB\xBF",
        "utf_16_big.csv": both(marked)["big"],
        "utf_16_little.csv": both(marked)["little"],
        "utf_8_of_the_same.csv": marked.encode(),
        "marks_inside_utf_16_big.csv": both(inner_mark)["big"],
        "marks_inside_utf_16_little.csv": both(inner_mark)["little"],
        "utf_16_mark_alone.csv": b"\xFE\xFF",
        "half_a_surrogate_pair_big.csv": b"\xFE\xFF" + "a\n1".encode("utf-16-be") + b"\xDC\x00\x00\n",
        "half_a_surrogate_pair_little.csv": b"\xFF\xFE" + "a\nx".encode("utf-16-le") + b"\x00\xD8\n\x00",
        "half_of_one_mark_and_another_little.csv": b"\xEF\xFF\xFE\x61\n\x001\x00\n\x00",
        "half_of_one_mark_and_another_big.csv": b"\xEF\xBB\xFE\xFF\x00a\x00\n\x001\x00\n",
        "half_a_mark_is_text.csv": b"\xFEa\n1\n",
        "header_alone_leaves_nothing_to_write.csv": b"a,b\n",
        "one_byte.csv": b"a",
        "empty_first_line_leaves_no_columns.csv": b"\na,b\n1,2\n",
        "empty_first_name_leaves_no_columns.csv": b",b\n1,2\n",
        "empty.csv": b"",
        "brace_without_a_key_is_refused.csv": b"{x},b\n1,2\n",
        "brace_and_key_without_a_colon_is_refused.csv": b'{"a",b\n1,2\n',
        "key_and_colon_pass.csv": b'{"a":1,b\n1,2\n',
        "motion_in_a_table.csv": b"HIERARCHY\nROOT Hips\n{\n}\n",
        "UPPER.CSV": b"a\n1\n",
        "several.points.in.the.name.csv": b"a\n1\n",
        "tabs.tsv": b"a\tb\n1\tx,y\n-2.5\t\"q\tr\"\n",
        "tabs.txt": b"a\tb\r\n1\tx\r\n",
        "commas_are_text.tsv": b"a,b\n1,2\n",
        ".tsv": b"a\tb\n1\t2\n",
        "utf_16_little.tsv": b"\xFF\xFE" + "a\tb\r\n\u00fc\t1\r\n".encode("utf-16-le"),
        "motion_in_a_text.txt": b"HIERARCHY\nROOT\tHips\n",
        "unknown.xyz": b"a,b\n1,2\n",
        "no_extension": b"a,b\n1,2\n",
        "not_json.json": b"a,b\n1,2\n",
        "mark_before_json_makes_a_table.json": b"\xEF\xBB\xBF[1,2]\n3,4\n",
        "scalar_makes_a_table.json": b"17\n18\n",
        "text_makes_a_table.bvh": b"a,b\n1,2\n",
        "root_missing_makes_a_table.bvh": b"HIERARCHY\nJOINT Hips\n",
        "lower_case_makes_a_table.bvh": b"hierarchy\nROOT Hips\n",
        "carriage_returns_alone_make_a_table.bvh": b"HIERARCHY\rROOT Hips\r",
    }


def nested(depth, inside):
    return b"[" * depth + inside + b"]" * depth


def documents():
    return {
        "kinds_of_values.json": b'{"a":1,"b":[1,2],"c":{"d":"x"},"e":null,"f":true,"g":false}',
        "array_of_numbers.json": b"[1,2]",
        "array_in_an_array.json": b"[[1]]",
        "object_in_an_array.json": b'[{"k":1}]',
        "arrays_in_arrays.json": b'{"m":[[1,[2,"x"]],[[[true]]],[]]}',
        "object_in_an_array_loses_its_name.json": b'{"m":[{"k":[5,{"q":6}]},7]}',
        "dropped_group_keeps_its_number.json": b'{"a":{"b":null},"c":1}',
        "empty_containers_take_no_number.json": b'{"a":{},"b":[],"c":1}',
        "gaps_in_the_numbers.json": b'[{"a":[null,[null],{}]},"x",[[],[[null]]],{"b":{"c":{"d":null}},"e":2},3]',
        "vanished_first_child_leaves_no_comma.json": b'{"g":{"a":{"n":null},"b":[{}],"c":1}}',
        "only_an_empty_object.json": b'{"a":{}}',
        "only_nulls.json": b"[null,[null,{\"a\":null}]]",
        "empty_array.json": b"[]",
        "empty_object_is_refused_by_its_missing_key.json": b"{}",
        "same_key_twice.json": b'{"a":1,"a":"x","a":{"a":2}}',
        "empty_key.json": b'{"":1,"b":{"":[""]}}',
        "empty_string.json": b'["","x"]',
        "white_space.json": b' \t\r\n{ "a" :\n[ 1 ,\t2 ]\r , "b" : { "c" : true } } \n\n',
        "escapes.json": rb'{"k\"\\\/\b\f\n\r\t\u00e9\u20ac":"v\"\\\/\b\f\n\r\t\u00e9\u20ac\u0041","\ud83d\ude00":"\uD83D\uDE00"}',
        "utf_8.json": '{"\u00e4\u65e5":["\U0001f600","\u00df"]}'.encode(),
        "bytes_that_are_no_utf_8.json": b'["\xff\xc3","\xed\xa0\x80"]',
        "delete_character_passes.json": b'["\x7f"]',
        "escaped_control_character_is_refused.json": rb'["\u0001"]',
        "integers.json": b"[0,-1,7,10,100,2147483647,-2147483648,2147483648,4294967295,4294967296,9007199254740991,"
                         b"9007199254740993,1234567890123456,12345678901234567]",
        "integers_of_64_bits.json": b"[9223372036854775807,-9223372036854775808,9223372036854775808,"
                                    b"18446744073709551615,18446744073709550592]",
        "negative_zero_is_one_only_with_a_fraction.json": b"[-0,-0.0,-0e1,0,0.0]",
        "decimals.json": b"[9.95,0.1,1.10,123.456,-12.25,0.0001,3.141592653589793,100.0,1.0,-0.5]",
        "exponents.json": b"[1e2,1E+2,1.5e3,25e-2,1e22,1.5e20,-1.5e10,12.5E-1]",
        "small_number_is_refused.json": b"[0.00001]",
        "small_number_beside_others_is_refused.json": b'{"a":1,"b":-2.5e-7,"c":"x"}',
        "zero_byte_ends_the_text.json": b'{"a":1}\0 no more',
        "number_too_big.json": b"[1e400]",
        "deepest_flag.json": nested(50, b"true"),
        "flag_too_deep.json": nested(51, b"true"),
        "deepest_text.json": nested(49, b'"x"'),
        "text_too_deep.json": nested(50, b'"x"'),
        "deepest_number.json": nested(48, b"1"),
        "number_too_deep.json": nested(49, b"1"),
        "comma_behind_the_last_element.json": b"[1,]",
        "comma_behind_the_last_member.json": b'{"a":1,}',
        "comma_missing.json": b"[1 2]",
        "closing_bracket_missing.json": b'{"a":[1,2}',
        "cut_object.json": b'{"a":1',
        "two_values.json": b"[1] [2]",
        "word_cut.json": b"[tru]",
        "unknown_word.json": b"[NaN]",
        "leading_zero.json": b"[01]",
        "leading_plus.json": b"[+1]",
        "leading_point.json": b"[.5]",
        "trailing_point.json": b"[1.]",
        "exponent_without_digits.json": b"[1e+]",
        "single_quotes.json": b"['a']",
        "comment.json": b"[1 /* x */]",
        "string_without_end.json": b'["abc]',
        "raw_line_break_in_a_string.json": b'["a\nb"]',
        "unknown_escape.json": rb'["\x41"]',
        "short_unicode_escape.json": rb'["\u12g4"]',
        "half_a_surrogate_pair.json": rb'["\ud800x"]',
        "key_without_quotes_is_refused_before_any_conversion.json": b"{a:1}",
        "colon_missing_is_refused_before_any_conversion.json": b'{"a" 1}',
        "colon_missing_in_a_later_member.json": b'{"a":1,"b" 2}',
        "number_as_version_is_refused_before_any_conversion.json": b'{"version":2,"a":1}',
        "text_as_version.json": b'{"version":"1.0.0","a":1}',
        "version_behind_another_key.json": b'{"a":1,"version":"tdjson2.0.0"}',
        "version_2_is_never_converted.json": b'{"version":"TDJSON2.0.0","dynamicSamplesPresentB":false,"dataOutline":['
                                             b'{"objectType":"dataStatic","displayName":"a","matchName":"a","dataType":'
                                             b'{"type":"boolean"},"value":true}]}\n',
        "version_2_without_an_outline_is_refused.json": b'{"version":"tdjson2.0.0","dynamicSamplesPresentB":false}',
        "version_2_in_a_text.txt": b'{"version":"tdjson2.0.0","dynamicSamplesPresentB":false,"dataOutline":['
                                   b'{"objectType":"dataStatic","displayName":"a","matchName":"a","dataType":'
                                   b'{"type":"boolean"},"value":true}]}',
        "opening_bracket_alone_makes_a_table.json": b"[",
        "bracket_as_last_byte_makes_a_table.json": b" \n[",
        "brace_as_last_byte_is_refused_by_its_missing_key.json": b" \n{",
        "UPPER.JSON": b"[1]",
        "json_in_a_table.csv": b'["a","b"]\n1,2\n',
        "json_without_extension": b"[1,2]\n3,4\n",
        "empty.json": b"",
    }


def bvh(*lines, motion=(), frame_time="0.04", frames=None, end="\n"):
    """lines: what stands inside the root's braces."""
    text = ["HIERARCHY", "ROOT Hips", "{", *lines, "}", "MOTION", f"Frames: {len(motion) if frames is None else frames}",
            f"Frame Time: {frame_time}", *motion]
    return (end.join(text) + end).encode()


OFFSET = "OFFSET 0 0 0"
THREE = "CHANNELS 3 Zrotation Xrotation Yrotation"
SIX = "CHANNELS 6 Xposition Yposition Zposition Zrotation Xrotation Yrotation"


def recordings():
    turned = ("10 0 0", "0 10 0", "0 0 10", "10 20 30", "-170 95 -45.5")
    files = {
        "hand_made.bvh": bvh("\tOFFSET 1.5 -2 10", "\t" + SIX, "\tJOINT Arm", "\t{", "\t\tOFFSET 0 9.95 -0.25",
                             "\t\t" + THREE, "\t\tEnd Site", "\t\t{", "\t\t\tOFFSET 0 0 5", "\t\t}", "\t}",
                             motion=("0 1 2 10 20 30 40 50 60", "-1.5 0 3.25 -10 -20 -30 0.5 0.25 -0.125")),
        "carriage_returns_and_line_feeds.bvh": bvh(OFFSET, SIX, motion=("1 2 3 4 5 6",), end="\r\n"),
        "no_line_end_at_the_end.bvh": bvh(OFFSET, THREE, motion=("1 2 3", "4 5 6")).rstrip(b"\n"),
        "blank_lines_in_the_motion.bvh": bvh(OFFSET, THREE, motion=("", "1 2 3", "", " \t", "4 5 6", "")),
        "text_behind_the_numbers_is_ignored.bvh": bvh(OFFSET, THREE, motion=("1 2 3 # first", "abc", "4 5 6 x 7")),
        "blanks_and_tabs_between_numbers.bvh": bvh(OFFSET, THREE, motion=(" 1\t2  3 ", "\t4\t\t5 6\t")),
        "count_of_frames_is_not_looked_at.bvh": bvh(OFFSET, THREE, motion=("1 2 3", "4 5 6"), frames=99),
        "no_motion_leaves_the_offsets.bvh": bvh(OFFSET, SIX),
        "no_channels_and_no_motion.bvh": bvh("OFFSET 1 2 3"),
        "no_channels_but_motion.bvh": bvh(OFFSET, motion=("1 2 3",)),
        "too_few_numbers.bvh": bvh(OFFSET, SIX, motion=("1 2 3 4 5 6", "1 2 3 4 5")),
        "too_many_numbers.bvh": bvh(OFFSET, THREE, motion=("1 2 3 4",)),
        "letters_among_the_numbers.bvh": bvh(OFFSET, THREE, motion=("1 x 3",)),
        "number_out_of_range_ends_the_line.bvh": bvh(OFFSET, THREE, motion=("1 2 1e999",)),
        "positions_are_negated_behind_the_first.bvh": bvh(OFFSET, SIX, motion=("0 0 0 0 0 0", "-0 -0 -0 0 0 0",
                                                                               "1.5 -2.25 3 0 0 0")),
        "position_order_of_the_file.bvh": bvh(
            OFFSET, "CHANNELS 6 Zposition Xposition Yposition Xrotation Yrotation Zrotation", motion=("1 2 3 0 0 0",)),
        "rotation_listed_first.bvh": bvh(OFFSET, "CHANNELS 6 Zrotation Xrotation Yrotation Xposition Yposition Zposition",
                                         motion=("1 2 3 40 50 60",)),
        "mixed_positions_are_no_channels.bvh": bvh(
            OFFSET, "CHANNELS 6 Xposition Zrotation Yposition Xrotation Zposition Yrotation"),
        "mixed_positions_break_the_count.bvh": bvh(
            OFFSET, "CHANNELS 6 Xposition Yrotation Zposition Zrotation Xrotation Yrotation", motion=("1 2 3 4 5 6",)),
        "three_positions_are_no_channels.bvh": bvh(OFFSET, "CHANNELS 3 Xposition Yposition Zposition"),
        "three_positions_break_the_count.bvh": bvh(OFFSET, "CHANNELS 3 Xposition Yposition Zposition",
                                                   motion=("1 2 3",)),
        "two_blanks_between_channels_are_no_order.bvh": bvh(OFFSET, "CHANNELS 3 Zrotation  Xrotation Yrotation"),
        "last_channels_line_counts.bvh": bvh(OFFSET, "CHANNELS 3 Xrotation Yrotation Zrotation",
                                             "CHANNELS 3 Zrotation Yrotation Xrotation", motion=("10 20 30",)),
        "six_channels_then_three_keep_the_position.bvh": bvh(OFFSET, SIX, "CHANNELS 3 Zrotation Yrotation Xrotation",
                                                             motion=("1 2 3 10 20 30",)),
        "four_channels.bvh": bvh(OFFSET, "CHANNELS 4 Xposition Yposition Zposition Xrotation"),
        "channels_without_a_count.bvh": bvh(OFFSET, "CHANNELS Zrotation Xrotation Yrotation"),
        "offset_with_four_numbers.bvh": bvh("OFFSET 1 2 3 4"),
        "offset_with_a_remark.bvh": bvh("OFFSET 1 2 3 mm"),
        "offset_with_two_numbers.bvh": bvh("OFFSET 1 2"),
        "offset_with_commas.bvh": bvh("OFFSET 1,2 3 4"),
        "offset_missing.bvh": bvh(THREE, motion=("1 2 3",)),
        "last_offset_counts.bvh": bvh("OFFSET 1 2 3", "OFFSET -4 5.5 6e2"),
        "digits_of_offsets.bvh": bvh("OFFSET 9.95 -0 123456.78125", "JOINT A", "{", "OFFSET 1e20 -1.5e20 0.1", "}",
                                     "JOINT B", "{", "OFFSET 0.30000000000000004 100 12.000", "}"),
        "small_offset_is_refused.bvh": bvh("OFFSET 0 1.5e-7 0"),
        "brace_on_the_line_of_the_name.bvh": b"HIERARCHY\nROOT Hips {\nOFFSET 0 0 0\n}\nMOTION\nFrames: 0\nFrame Time: 0.04\n",
        "brace_among_other_words.bvh": b"HIERARCHY\nROOT Hips\n x { OFFSET 9 9 9\nOFFSET 1 2 3\n} done\nMOTION\nFrames: 0\n"
                                       b"Frame Time: 0.04\n",
        "blanks_before_the_keywords.bvh": b" \tHIERARCHY x\n  ROOT  Hips  extra\n{\n\t}\nMOTION\n Frames: 0\n Frame Time: 0.04\n",
        "root_without_a_name.bvh": b"HIERARCHY\nROOT\n{\n" + THREE.encode() + b"\n}\nFrames: 1\nFrame Time: 0.04\n1 2 3\n",
        "unknown_words_are_skipped.bvh": bvh("# remark", "", OFFSET, "LIMITS 1 2", "CHANNEL 3", THREE, motion=("1 2 3",)),
        "second_root_is_ignored.bvh": b"HIERARCHY\nROOT A\n{\nOFFSET 1 2 3\n}\nROOT B\n{\nOFFSET 4 5 6\n}\nMOTION\nFrames: 0\n"
                                      b"Frame Time: 0.04\n",
        "end_sites.bvh": bvh(OFFSET, "JOINT Hand", "{", OFFSET, THREE, "End Site", "{", "OFFSET 1 2 3", "}", "}",
                             motion=("1 2 3",)),
        "channels_and_joints_in_an_end_site_are_ignored.bvh": bvh(
            OFFSET, "End Site", "{", "OFFSET 1 2 3", "CHANNELS 5 nothing", "JOINT X", "}"),
        "end_site_in_an_end_site.bvh": bvh(OFFSET, "End Site", "{", "End Site", "{", "OFFSET 1 2 3", "}", "}"),
        "two_end_sites_share_a_name.bvh": bvh(OFFSET, "End Site", "{", "}", "End Site", "{", "}"),
        "end_without_site.bvh": bvh(OFFSET, "End", "{", "}"),
        "end_with_another_word.bvh": bvh(OFFSET, "End Joint", "{", "}"),
        "joint_inside_keeps_file_order.bvh": bvh(OFFSET, THREE, "JOINT A", "{", SIX, "JOINT B", "{", THREE, "}", "}",
                                                 "JOINT C", "{", THREE, "}",
                                                 motion=("1 0 0 2 3 4 5 0 0 6 0 0 7 0 0",)),
        "channels_behind_the_children.bvh": bvh("JOINT A", "{", "CHANNELS 3 Xrotation Yrotation Zrotation", "}",
                                                "CHANNELS 3 Zrotation Yrotation Xrotation", motion=("1 0 0 2 0 0",)),
        "same_joint_name_twice.bvh": bvh(OFFSET, "JOINT A", "{", "}", "JOINT A", "{", "}"),
        "joint_named_like_a_stream.bvh": bvh(OFFSET, "JOINT HipsOFFSET", "{", "}"),
        "underscore_in_a_name_with_channels.bvh": bvh(OFFSET, "JOINT left_arm", "{", THREE, "}", motion=("1 2 3",)),
        "underscore_in_a_name_without_channels.bvh": bvh(OFFSET, "JOINT left_arm", "{", "}"),
        "name_ends_at_a_blank.bvh": bvh(OFFSET, "JOINT left arm", "{", THREE, "}", motion=("1 2 3",)),
        "name_of_digits.bvh": bvh(OFFSET, "JOINT 12", "{", THREE, "}", motion=("1 2 3",)),
        "no_brace_behind_the_root.bvh": b"HIERARCHY\nROOT Hips\nOFFSET 0 0 0\n}\n",
        "end_of_the_file_behind_the_root.bvh": b"HIERARCHY\nROOT Hips\n",
        "end_of_the_file_inside_a_joint.bvh": b"HIERARCHY\nROOT Hips\n{\nOFFSET 0 0 0\n",
        "end_of_the_file_at_an_inner_brace.bvh": b"HIERARCHY\nROOT Hips\n{\nJOINT A\n{\n}\n",
        "end_of_the_file_in_the_middle_of_the_last_line.bvh": b"HIERARCHY\nROOT Hips\n{\nJOINT A\n{\n}",
        "root_never_closed.bvh": b"HIERARCHY\nROOT Hips\n{\nMOTION\nFrames: 1\nFrame Time: 0.04\n",
        "hierarchy_alone.bvh": b"HIERARCHY\nROOT Hips\n{\n}\n",
        "frame_time_missing.bvh": b"HIERARCHY\nROOT Hips\n{\n}\nMOTION\nFrames: 0\n",
        "frames_missing.bvh": b"HIERARCHY\nROOT Hips\n{\n}\nMOTION\nFrame Time: 0.04\n",
        "frame_time_before_frames.bvh": b"HIERARCHY\nROOT Hips\n{\n}\nMOTION\nFrame Time: 0.04\nFrames: 0\n",
        "both_on_one_line.bvh": b"HIERARCHY\nROOT Hips\n{\n}\nMOTION\nFrames: 0 Frame Time: 0.04\n",
        "frame_time_on_the_last_line_without_an_end.bvh": b"HIERARCHY\nROOT Hips\n{\n}\nMOTION\nFrames: 0\nFrame Time: 0.04",
        "frame_time_of_letters.bvh": bvh(OFFSET, frame_time="fast"),
        "frame_time_with_a_comma.bvh": bvh(OFFSET, frame_time="0,04"),
        "frame_time_negative.bvh": bvh(OFFSET, frame_time="-0.04"),
        "frame_time_at_the_limit.bvh": bvh(OFFSET, frame_time="0.001"),
        "motion_in_a_file.xyz": bvh(OFFSET, THREE, motion=("1 2 3",)),
        "motion_in_a_file.json": bvh(OFFSET, THREE, motion=("1 2 3",)),
        "motion_without_extension": bvh(OFFSET, THREE, motion=("1 2 3",)),
        "UPPER.BVH": bvh(OFFSET, THREE, motion=("1 2 3",)),
        "empty.bvh": b"",
        "deepest_joints.bvh": bvh(*["JOINT J%d\n{" % i for i in range(45)], *["}"] * 45),
        "joints_too_deep.bvh": bvh(*["JOINT J%d\n{" % i for i in range(46)], *["}"] * 46),
        "zero_angles.bvh": bvh(OFFSET, THREE, motion=("0 0 0", "-0 0 0", "0 -0 0", "0 0 -0")),
        "half_turns.bvh": bvh(OFFSET, THREE, motion=("180 0 0", "0 45 0", "-180 0 0")),
        "right_angles_leave_small_rests_and_are_refused.bvh": bvh(OFFSET, THREE, motion=("90 45 90",)),
        "small_angle_is_refused.bvh": bvh(OFFSET, THREE, motion=("0.00001 0 0",)),
        "small_angle_inside_the_range_passes.bvh": bvh(OFFSET, THREE, motion=("-5 -5 -5", "0.00001 0.00002 0.00003", "5 5 5")),
        "small_position_inside_the_range_passes.bvh": bvh(OFFSET, SIX, motion=(
            "-5 -5 -5 1 1 1", "1e-5 2.5e-7 -1.50e-10 2 2 2", "5 5 5 3 3 3")),
        "big_positions.bvh": bvh(OFFSET, SIX, motion=("1e20 -1.5e20 123456789.123456789 1 1 1",
                                                      "0.1 9.95 -100 2 2 2")),
        "minute_at_29_97_drops_frames.bvh": bvh(OFFSET, THREE, motion=("0 0 0",) * 1802, frame_time="0.033366"),
        "minute_of_slow_frames.bvh": bvh(OFFSET, THREE, motion=("0 0 0",) * 122, frame_time="0.5"),
        "rate_of_zero_counts_seconds.bvh": bvh(OFFSET, THREE, motion=("0 0 0",) * 61, frame_time="60"),
    }
    for order in ("XYZ", "XZY", "YZX", "YXZ", "ZXY", "ZYX"):
        channels = " ".join(axis + "rotation" for axis in order)
        files[f"order_{order}.bvh"] = bvh(OFFSET, f"CHANNELS 3 {channels}", motion=turned)
        places = channels.replace("rotation", "position")
        files[f"six_channels_{order}.bvh"] = bvh(OFFSET, f"CHANNELS 6 {places} {channels}", motion=("1 2 3 10 20 30",))
    for frame_time in ("0.0333333", "0.033333", ".03333", "0.033366", "0.033367", "0.0166833", "0.016683", "0.016667",
                       "0.0166667", "0.02", "0.041667", "0.0416667", "0.0416", "0.041666", "0.05", "0.0101", "0.01",
                       "0.00999", "0.0011", "0.00101", "0.001001", "1", "2", "1e-2"):
        files[f"frame_time_{frame_time}.bvh"] = bvh(OFFSET, THREE, motion=("1 2 3",) * 3, frame_time=frame_time)
    files["second_at_120_hz_has_three_digits.bvh"] = bvh(OFFSET, THREE, motion=("1 2 3",) * 242, frame_time="0.008333")
    files["second_at_99_hz_has_two_digits.bvh"] = bvh(OFFSET, THREE, motion=("1 2 3",) * 100, frame_time="0.0101")
    return files


def all_inputs():
    inputs = {}
    for group in (tables(), documents(), recordings()):
        for name, content in group.items():
            # The suite and the script name results after the whole name of the input.
            assert name not in inputs, name
            inputs[name] = content
    return inputs


def main():
    os.makedirs(INPUTS, exist_ok=True)
    for name, content in all_inputs().items():
        with open(os.path.join(INPUTS, name), "wb") as file:
            file.write(content)
    return 0


if __name__ == "__main__":
    sys.exit(main())
