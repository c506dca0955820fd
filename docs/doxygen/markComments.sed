# Makes documentation comments of plain ones: a comment of its own lines belongs to
# what follows, one behind a declaration to that declaration. Headings between
# functions and preprocessor lines stay as they are. A header begins with what the
# whole file is about.
1s|^// |/// @file\
/// |
1s|^/\* |/** @file\
 * |
/^ *#/b
/^ *\/[/*] --- /b
s|^\( *\)//\( .*\)\{0,1\}$|\1///\2|
t
s|\([;,{})]\)  *// |\1  ///< |
t
s|^\( *\)/\* |\1/** |
t
s|\([;,{})]\)  */\* |\1  /**< |
