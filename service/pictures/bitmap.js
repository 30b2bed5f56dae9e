import { PNG } from 'pngjs';

import { ServiceError } from '../errors.js';

/** The most pixels of a picture: with four bytes each, they take 100 MB while it is worked on. */
export const MAX_PIXELS = 25e6;
/** Letters of a screen's size are recognised far better when enlarged; the pixels up to which it is done, by factor. */
const ENLARGED = [
  [3, 0.7e6],
  [2, 3e6],
];
/** Effort of compression, 0 to 9: above this one it takes three times as long and saves little. */
const DEFLATE_LEVEL = 4;

const SIGNATURE = Buffer.from([0x89, 0x50, 0x4e, 0x47, 0x0d, 0x0a, 0x1a, 0x0a]);

/**
 * @typedef {object} Bitmap
 * @property {number} width in pixels
 * @property {number} height
 * @property {Uint8Array} data red, green, blue and alpha of each pixel, row by row
 */

/**
 * @param {Buffer} file
 * @returns {Bitmap}
 * @throws {ServiceError} for what is no PNG, and for one with too many pixels, which is not unpacked
 */
export function readBitmap(file) {
  const refusal = new ServiceError(422, 'unreadable_picture', 'The picture is no PNG that can be read');
  if (file.length < 24 || !file.subarray(0, 8).equals(SIGNATURE)) throw refusal;
  if (file.readUInt32BE(16) * file.readUInt32BE(20) > MAX_PIXELS) {
    throw new ServiceError(413, 'content_too_long', 'The picture has too many pixels');
  }
  try {
    const { width, height, data } = PNG.sync.read(file);
    return { width, height, data };
  } catch {
    throw refusal;
  }
}

/** @param {Bitmap} bitmap @returns {Buffer} a PNG */
export function writeBitmap({ width, height, data }) {
  const png = new PNG({ width, height });
  png.data = Buffer.from(data.buffer, data.byteOffset, data.byteLength);
  return PNG.sync.write(png, { deflateLevel: DEFLATE_LEVEL });
}

/**
 * The picture as it is recognised best: grey, what is transparent white, small ones enlarged.
 * @param {Bitmap} bitmap
 * @returns {{factor: number, file: Buffer}} a PNG, `factor` times as wide and high
 */
export function forRecognition(bitmap) {
  const { width, height } = bitmap;
  const factor = ENLARGED.find(([, pixels]) => width * height <= pixels)?.[0] ?? 1;
  const grey = enlarge(greyOf(bitmap), width, height, factor);
  const png = new PNG({ width: width * factor, height: height * factor, colorType: 0, inputColorType: 0 });
  png.data = Buffer.from(grey.buffer);
  return {
    factor,
    file: PNG.sync.write(png, { colorType: 0, inputColorType: 0, inputHasAlpha: false, deflateLevel: 1 }),
  };
}

function greyOf({ width, height, data }) {
  const grey = new Uint8Array(width * height);
  for (let i = 0, at = 0; i < grey.length; i++, at += 4) {
    // The usual weights of the eye's sensitivity, in 256ths.
    const light = (77 * data[at] + 150 * data[at + 1] + 29 * data[at + 2]) / 256;
    grey[i] = 255 + ((light - 255) * data[at + 3]) / 255;
  }
  return grey;
}

/** Enlarges with straight lines between the centres of neighbouring pixels. */
function enlarge(grey, width, height, factor) {
  if (factor === 1) return grey;
  const columns = samples(width, factor);
  const rows = samples(height, factor);
  const large = new Uint8Array(width * height * factor * factor);
  let out = 0;
  for (const { from: y, to: y1, part: v } of rows) {
    const [upper, lower] = [y * width, y1 * width];
    for (const { from: x, to: x1, part: u } of columns) {
      const top = grey[upper + x] * (1 - u) + grey[upper + x1] * u;
      const bottom = grey[lower + x] * (1 - u) + grey[lower + x1] * u;
      large[out++] = top * (1 - v) + bottom * v;
    }
  }
  return large;
}

/** For each enlarged position the two between which it lies, and how far it is from the first. */
function samples(length, factor) {
  return Array.from({ length: length * factor }, (_, i) => {
    const place = Math.min(Math.max((i + 0.5) / factor - 0.5, 0), length - 1);
    const from = Math.floor(place);
    return { from, to: Math.min(from + 1, length - 1), part: place - from };
  });
}
