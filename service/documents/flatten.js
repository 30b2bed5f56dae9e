/** Fills behind cells, taken out of a picture: white letters on a dark heading become dark ones on white. */

/** Levels of gray that still are the same shade. */
const SAME = 6;
/** Pixels of one shade in a row that are background: more than is between two letters. */
const MIN_RUN = 24;
/** A fill is higher than a drawn line. */
const MIN_HEIGHT = 7;
/** A photograph has no flat background; it stays as it is. */
const MIN_FLAT_PART = 0.5;

/**
 * @param {import('./rules.js').GrayPicture} picture
 * @returns {import('./rules.js').GrayPicture} how much each pixel differs from what is behind it, on white; the very
 *   same for a picture without flat backgrounds
 */
export function flattened(picture) {
  const { width, height, data } = picture;
  const flat = new Uint8Array(data.length);
  const behind = new Uint8Array(width).fill(255);
  let background = 0;
  for (let y = 0; y < height; y++) {
    background += takeRuns(picture, y, behind);
    for (let x = 0, i = y * width; x < width; x++, i++) flat[i] = 255 - Math.abs(data[i] - behind[x]);
  }
  return background >= MIN_FLAT_PART * data.length ? { width, height, data: flat } : picture;
}

/** Notes what is behind a row's pixels where that shows; elsewhere it is as in the row above. How many show it. */
function takeRuns(picture, y, behind) {
  const { width, data } = picture;
  const row = y * width;
  let taken = 0;
  for (let from = 0, x = 1; x <= width; x++) {
    if (x < width && Math.abs(data[row + x] - data[row + from]) <= SAME) continue;
    if (x - from >= MIN_RUN && isHigh(picture, y, from, x)) {
      behind.fill(data[row + from], from, x);
      taken += x - from;
    }
    from = x;
  }
  return taken;
}

/** Whether a run has its shade below it as well, or above it, at one place at least: words may stand at others. */
function isHigh({ width, height, data }, y, from, to) {
  const shade = data[y * width + from];
  const places = [1, 2, 3].map((part) => from + Math.floor((part * (to - from)) / 4));
  const isSame = (x, row) => Math.abs(data[row * width + x] - shade) <= SAME;
  return [y + MIN_HEIGHT, y - MIN_HEIGHT].some(
    (row) => row >= 0 && row < height && places.some((x) => isSame(x, row) && isSame(x, (row + y) >> 1)),
  );
}
