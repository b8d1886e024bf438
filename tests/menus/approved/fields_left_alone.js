HM_NovaPagina="";
HM_Array1 = [
[0,                          // menu_width
0, // left_position
0,                            // top_position
"",                         // font_color
"",                      // mouseover_font_color
"",                      // background_color
"",                       // mouseover_background_color
"",                        // border_color
"",                       // separator_color
0,                             // top_is_permanent
0,                             // top_is_horizontal
0,                             // tree_is_horizontal
0,                             // position_under
0,                             // top_more_images_visible
0,                             // tree_more_images_visible
"",                        // evaluate_upon_tree_show
"",                        // evaluate_upon_tree_hide
,                              // right_to_left
,                          // display_on_click
,                          // top_is_variable_width
,                              // tree_is_variable_width
],                         // display_on_click
["&nbsp; Cadastros &nbsp;|","",1,0,1],
["&nbsp; Sair &nbsp;|","sair.asp",1,0,0]
]

HM_Array1_1 = [
[],
["Clientes","cli.asp",1,0,0],
["Produtos","prod.asp",1,0,0]
]

