// Waiting for what another program writes.
const PATIENCE = 120_000; // ms before a hanging program fails its test; no test waits so long otherwise

/** Resolves with the first line of a stream that `wanted` finds something in. */
export function line_of(stream, wanted, ended) {
  return new Promise((resolve, reject) => {
    let text = "";
    const late = setTimeout(() => reject(new Error(`nothing in time: ${text}`)), PATIENCE);
    stream.setEncoding("utf8").on("data", (piece) => {
      text += piece;
      const found = wanted.exec(text);
      if (found) {
        clearTimeout(late);
        resolve(found);
      }
    });
    ended.then((how) => {
      clearTimeout(late);
      reject(new Error(`ended with ${how}: ${text}`));
    });
  });
}
