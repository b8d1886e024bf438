HM_NovaPagina="main";
HM_Array1 = [
[150,                          // menu_width
10, // left_position
80,                            // top_position
"black",                         // font_color
"white",                      // mouseover_font_color
"silver",                      // background_color
"navy",                       // mouseover_background_color
"black",                        // border_color
"gray",                       // separator_color
1,                             // top_is_permanent
1,                             // top_is_horizontal
0,                             // tree_is_horizontal
1,                             // position_under
1,                             // top_more_images_visible
1,                             // tree_more_images_visible
"",                        // evaluate_upon_tree_show
"",                        // evaluate_upon_tree_hide
0,                              // right_to_left
0,                          // display_on_click
1,                          // top_is_variable_width
1,                              // tree_is_variable_width
],                         // display_on_click
["&nbsp; Cadastros &nbsp;|","",1,0,1],
["&nbsp; Sair &nbsp;|","sair.asp",1,0,0]
]

HM_Array1_1 = [
[],
["Clientes","cli.asp",1,0,0],
["Produtos","prod.asp",1,0,0]
]

