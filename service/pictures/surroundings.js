/** What is found about a text in a picture: the colours behind it and of its letters, and the room around it. */

/** Differences of colours, 0 to 255 in the channel that differs most: within one colour, and within a background. */
const SAME = 8;
const ALIKE = 24;
/** How deep a frame around a text is looked at. */
const FRAME = 2;
/** The share of a frame's pixels that makes its commonest colour the background. */
const PREVAILS = 0.6;
/** Pixels that differ from the background by this part of the greatest difference are ink, not the edge of a letter. */
const FULL_INK = 0.75;
/** How far a translation may go beyond the text, in sizes of its letters, where nothing is in the way. */
const ROOM_ABOVE = 0.3;
const ROOM_BELOW = 0.3;
/** … and to the right, in widths of the text. */
const ROOM_ASIDE = 0.6;
/** What stays free between a longer translation and the next thing in the picture, in sizes. */
const MARGIN = 0.4;

/** @typedef {import('./bitmap.js').Bitmap} Bitmap @typedef {import('./passages.js').Box} Box */

/**
 * @typedef {object} Surroundings
 * @property {Box} erased what the text takes with the soft edges of its letters
 * @property {Box} room where the translation may be drawn; it holds `erased`
 * @property {number[][]} above colours just above `erased`, one a column; red, green, blue, alpha
 * @property {number[][]} below colours just below it
 * @property {number[]} ink
 */

/**
 * @param {Bitmap} bitmap
 * @param {{box: Box, size: number}} passage
 * @param {Box[]} others boxes of the other texts that are translated
 * @returns {Surroundings}
 */
export function survey(bitmap, { box, size }, others) {
  const erased = within(bitmap, grown(box, Math.max(1, Math.round(size * 0.06))));
  const { colour, share } = commonest([...framePixels(bitmap, erased)]);
  const flat = share >= PREVAILS;
  const behind = flat ? plain(erased, colour) : shaded(bitmap, erased);
  const surroundings = { erased, ...behind };
  return { ...surroundings, room: roomAround(bitmap, surroundings, size, others), ink: inkIn(bitmap, surroundings) };
}

/** @param {Box} box @param {number} by @returns {Box} */
const grown = ({ left, top, right, bottom }, by) => ({
  left: left - by,
  top: top - by,
  right: right + by,
  bottom: bottom + by,
});

/** @param {{width: number, height: number}} bitmap @param {Box} box @returns {Box} the part inside the picture */
export const within = ({ width, height }, { left, top, right, bottom }) => ({
  left: Math.max(0, Math.floor(left)),
  top: Math.max(0, Math.floor(top)),
  right: Math.min(width, Math.ceil(right)),
  bottom: Math.min(height, Math.ceil(bottom)),
});

/** @returns {number[]} what is transparent has no colour of its own */
function colourAt({ width, data }, x, y) {
  const at = 4 * (y * width + x);
  return data[at + 3] === 0 ? [0, 0, 0, 0] : [data[at], data[at + 1], data[at + 2], data[at + 3]];
}

/** @param {number[]} a @param {number[]} b @returns {number} 0 to 255 */
export const difference = (a, b) => Math.max(...a.map((value, i) => Math.abs(value - b[i])));

/** The pixels just outside a box, two deep; there are none beyond the picture's edges. */
function* framePixels(bitmap, { left, top, right, bottom }) {
  const strips = [
    { left: left - FRAME, top, right: left, bottom },
    { left, top: top - FRAME, right, bottom: top },
    { left: right, top, right: right + FRAME, bottom },
    { left, top: bottom, right, bottom: bottom + FRAME },
  ];
  for (const strip of strips) yield* pixelsOf(bitmap, within(bitmap, strip));
}

function plain({ left, right }, colour) {
  const columns = Array.from({ length: right - left }, () => colour);
  return { above: columns, below: columns };
}

/** Colours that differ from column to column, smoothed over their neighbours. */
function shaded(bitmap, { left, top, right, bottom }) {
  const at = (y) => (_, i) => {
    const near = { left: left + i - FRAME, top: y, right: left + i + FRAME + 1, bottom: y + FRAME };
    const pixels = [...pixelsOf(bitmap, within(bitmap, near))];
    return pixels.length > 0 ? meanOf(pixels) : null;
  };
  const side = (y) => Array.from({ length: right - left }, at(y));
  const [above, below] = [side(top - FRAME), side(bottom)];
  // At the picture's edge one side stands for both; a text from edge to edge is on white, if on anything.
  const white = [255, 255, 255, 255];
  return {
    above: above.map((colour, i) => colour ?? below[i] ?? white),
    below: below.map((colour, i) => colour ?? above[i] ?? white),
  };
}

function* pixelsOf(bitmap, { left, top, right, bottom }) {
  for (let y = top; y < bottom; y++) {
    for (let x = left; x < right; x++) yield colourAt(bitmap, x, y);
  }
}

/** The mean of the colours around the commonest one, and their share of all. */
function commonest(pixels) {
  if (pixels.length === 0) return { colour: [255, 255, 255, 255], share: 0 };
  const counts = new Map();
  for (const pixel of pixels) {
    const key = pixel.map((value) => value >> 3).join();
    const entry = counts.get(key) ?? { pixel, count: 0 };
    entry.count++;
    counts.set(key, entry);
  }
  const { pixel } = [...counts.values()].reduce((best, entry) => (entry.count > best.count ? entry : best));
  const near = pixels.filter((other) => difference(pixel, other) <= SAME);
  return { colour: meanOf(near), share: near.length / pixels.length };
}

const meanOf = (colours) =>
  colours[0].map((_, i) => Math.round(colours.reduce((sum, colour) => sum + colour[i], 0) / colours.length));

/**
 * The colour behind a pixel of an erased text: between those above and below it.
 * @param {{erased: Box, above: number[][], below: number[][]}} surroundings
 * @param {number} x
 * @param {number} y
 */
export function backgroundAt({ erased, above, below }, x, y) {
  const upper = above[x - erased.left];
  const lower = below[x - erased.left];
  if (upper === lower) return upper;
  const part = (y - erased.top + 0.5) / (erased.bottom - erased.top);
  return upper.map((value, i) => Math.round(value * (1 - part) + lower[i] * part));
}

function inkIn(bitmap, behind) {
  const { erased } = behind;
  const found = [];
  let greatest = 0;
  for (let y = erased.top; y < erased.bottom; y++) {
    for (let x = erased.left; x < erased.right; x++) {
      const colour = colourAt(bitmap, x, y);
      const contrast = difference(colour, backgroundAt(behind, x, y));
      greatest = Math.max(greatest, contrast);
      if (contrast > ALIKE) found.push({ colour, contrast });
    }
  }
  const full = found.filter(({ contrast }) => contrast >= FULL_INK * greatest).map(({ colour }) => colour);
  return full.length > 0 ? commonest(full).colour : [0, 0, 0, 255];
}

/** Goes outwards as long as nothing but background is there. */
function roomAround(bitmap, { erased, above, below }, size, others) {
  const isFree = (box, colourOf) => {
    for (let y = box.top; y < box.bottom; y++) {
      for (let x = box.left; x < box.right; x++) {
        if (difference(colourAt(bitmap, x, y), colourOf(x)) > ALIKE) return false;
      }
    }
    return true;
  };
  const upper = (x) => above[x - erased.left];
  const lower = (x) => below[x - erased.left];
  const room = { ...erased };
  const limits = limitsOf(bitmap, erased, size, others);
  while (room.top > limits.top && isFree({ ...room, top: room.top - 1, bottom: room.top }, upper)) room.top--;
  while (room.bottom < limits.bottom && isFree({ ...room, top: room.bottom, bottom: room.bottom + 1 }, lower))
    room.bottom++;
  const margin = Math.ceil(MARGIN * size);
  const end = Math.min(limits.right + margin, bitmap.width);
  let { right } = room;
  while (right < end && isFree({ ...room, left: right, right: right + 1 }, () => upper(erased.right - 1))) right++;
  room.right = Math.max(erased.right, right - margin);
  return room;
}

/** Two texts one above the other share what lies between them. */
function limitsOf({ width, height }, erased, size, others) {
  const limits = {
    top: Math.max(0, erased.top - Math.round(ROOM_ABOVE * size)),
    bottom: Math.min(height, erased.bottom + Math.round(ROOM_BELOW * size)),
    right: Math.min(width, erased.right + Math.round(ROOM_ASIDE * (erased.right - erased.left))),
  };
  for (const other of others) {
    if (other.bottom <= erased.top) limits.top = Math.max(limits.top, Math.ceil((other.bottom + erased.top) / 2));
    if (other.top >= erased.bottom)
      limits.bottom = Math.min(limits.bottom, Math.floor((other.top + erased.bottom) / 2));
  }
  return limits;
}
