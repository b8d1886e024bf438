// The folder tree: its settings, and the calls that build it in memory. ua.js draws it.
//
// A page's script sets what it wants, builds from foldersTree down, and ends with
// initializeDocument(). Labels may hold HTML, of which marcacao.js keeps the text.

var USETEXTLINKS = 0;   // 1: the texts are links; 0: the icons alone
var STARTALLOPEN = 0;   // 1: every folder begins unfolded; 0: the root alone
var USEFRAMES = 0;      // 1: the tree stands in a frame, and its links open around it
var USEICONS = 1;       // 1: an icon before each text
var WRAPTEXT = 0;       // 1: long texts go on in the next line
var PERSERVESTATE = 0;  // 1: what was unfolded is so again on the next page
var ICONPATH = "";      // where the root's icons are
var foldersTree = null;

/** A folder that is in none yet. The page may set iconSrc and iconSrcClosed. */
function gFld(rotulo, endereco) {
  return { pasta: true, rotulo, endereco, filhos: [], iconSrc: "", iconSrcClosed: "" };
}

/** A document. Target "S" opens it in this window; any other text is a window's or a frame's name. */
function gLnk(alvo, rotulo, endereco) {
  return { pasta: false, alvo, rotulo, endereco, filhos: [], iconSrc: "", iconSrcClosed: "" };
}

/** Puts a folder at the end of another, and returns it. */
function insFld(acima, pasta) {
  acima.filhos.push(pasta);
  return pasta;
}

/** Puts a document at the end of a folder, and returns it. */
function insDoc(acima, documento) {
  acima.filhos.push(documento);
  return documento;
}
