<script src=arvore/ftiens4.js></script>
<script src=arvore/ua.js></script>
USETEXTLINKS = 1
STARTALLOPEN = 0
USEFRAMES = 0
USEICONS = 1
WRAPTEXT = 1
PERSERVESTATE = 1
ICONPATH = 'icones/'
foldersTree = gFld('Carteira', '')
foldersTree.iconSrc = ICONPATH + 'carteira.gif'
f1 = insFld(foldersTree, gFld('Clientes', 'javascript:undefined'))
f2 = insFld(f1, gFld('<b>São Paulo', 'estado.asp?uf=SP'))
f2.iconSrc = 'aberta.gif'
f2.iconSrcClosed = 'fechada.gif'
d1 = insDoc(f2, gLnk('S', 'Padaria Central', 'cliente.asp?oid=1001'))
d2 = insDoc(f2, gLnk('B', 'Móveis Ltda.', 'cliente.asp?oid=1002'))
d2.iconSrc = 'loja.gif'
initializeDocument()
