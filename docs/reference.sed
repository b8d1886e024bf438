# Tells Doxygen what the headers' comments belong to: the first one to the file, those of the C
# header to what they stand before or behind.
1s,^/// ,/// @file\n/// ,
1s,^/\* ,/** @file\n * ,
/\/\* -----/b
s,^( *)/\* ,\1/** ,
s,^(.*[^ ].*) /\* ,\1 /**< ,
