/** What is found about a text in a picture: the colours behind it and of its letters, and how much room is around it. */

/** Differences of colours, 0 to 255 in the channel that differs most, that the eye hardly sees in a background. */
const SAME = 20;
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
 * @property {number[][]} sides colours behind the text at its left, top, right and bottom; red, green, blue, alpha
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
  const frame = framePixels(bitmap, erased);
  const all = commonest(frame.flat());
  const flat = all.share >= PREVAILS;
  const sides = frame.map((side) => (flat || side.length === 0 ? all.colour : commonest(side).colour));
  const room = flat ? roomAround(bitmap, erased, { size, colour: all.colour, others }) : erased;
  return { erased, room, sides, ink: inkIn(bitmap, erased, sides) };
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

/** The pixels of the four sides just outside a box, two deep; a side at the picture's edge has none. */
function framePixels(bitmap, { left, top, right, bottom }) {
  const strips = [
    { left: left - 2, top, right: left, bottom },
    { left, top: top - 2, right, bottom: top },
    { left: right, top, right: right + 2, bottom },
    { left, top: bottom, right, bottom: bottom + 2 },
  ];
  return strips.map((strip) => [...pixelsOf(bitmap, within(bitmap, strip))]);
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
 * The colour behind a pixel of an erased text: that of all four sides where they agree, else something between them.
 * @param {number[][]} sides
 * @param {Box} box
 * @param {number} x
 * @param {number} y
 */
export function backgroundAt([left, top, right, bottom], box, x, y) {
  const u = (x - box.left + 0.5) / (box.right - box.left);
  const v = (y - box.top + 0.5) / (box.bottom - box.top);
  return left.map((_, i) =>
    Math.round((left[i] * (1 - u) + right[i] * u + top[i] * (1 - v) + bottom[i] * v) / 2),
  );
}

function inkIn(bitmap, box, sides) {
  const found = [];
  let greatest = 0;
  for (let y = box.top; y < box.bottom; y++) {
    for (let x = box.left; x < box.right; x++) {
      const colour = colourAt(bitmap, x, y);
      const contrast = difference(colour, backgroundAt(sides, box, x, y));
      greatest = Math.max(greatest, contrast);
      if (contrast > SAME) found.push({ colour, contrast });
    }
  }
  const full = found.filter(({ contrast }) => contrast >= FULL_INK * greatest).map(({ colour }) => colour);
  return full.length > 0 ? commonest(full).colour : [0, 0, 0, 255];
}

/** Goes outwards as long as nothing but background is there. */
function roomAround(bitmap, erased, { size, colour, others }) {
  const isFree = (box) => {
    for (const pixel of pixelsOf(bitmap, box)) if (difference(pixel, colour) > SAME) return false;
    return true;
  };
  const room = { ...erased };
  const limits = limitsOf(bitmap, erased, size, others);
  while (room.top > limits.top && isFree({ ...room, top: room.top - 1, bottom: room.top })) room.top--;
  while (room.bottom < limits.bottom && isFree({ ...room, top: room.bottom, bottom: room.bottom + 1 })) room.bottom++;
  const margin = Math.ceil(MARGIN * size);
  const wanted = limits.right + margin;
  let right = room.right;
  while (right < Math.min(wanted, bitmap.width) && isFree({ ...room, left: right, right: right + 1 })) right++;
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
    if (other.top >= erased.bottom) limits.bottom = Math.min(limits.bottom, Math.floor((other.top + erased.bottom) / 2));
  }
  return limits;
}
