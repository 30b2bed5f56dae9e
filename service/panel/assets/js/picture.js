/** Pictures that come as base64. The page may load pictures from the service only, so these are painted. */
import { make } from './dom.js';

const MEDIA_TYPE = 'image/png';

async function bitmapOf(base64) {
  const bytes = Uint8Array.from(atob(base64), (letter) => letter.charCodeAt(0));
  return createImageBitmap(new Blob([bytes], { type: MEDIA_TYPE }));
}

/**
 * @param {string} base64 a PNG; what is none shows nothing
 * @param {string} label for those who do not see it; without one it is only decoration
 * @returns {HTMLCanvasElement}
 */
export function makePicture(base64, label) {
  const canvas = make('canvas', label ? { role: 'img', 'aria-label': label } : { 'aria-hidden': 'true' });
  void paint(canvas, base64).catch(() => canvas.remove());
  return canvas;
}

async function paint(canvas, base64) {
  const picture = await bitmapOf(base64);
  Object.assign(canvas, { width: picture.width, height: picture.height });
  canvas.getContext('2d').drawImage(picture, 0, 0);
  picture.close();
}

/**
 * @param {string} base64 a PNG
 * @param {number} longest side of the thumbnail in pixels; smaller pictures keep their size
 * @returns {Promise<string>} a PNG in base64
 */
export async function thumbnailOf(base64, longest) {
  const picture = await bitmapOf(base64);
  const scale = Math.min(1, longest / Math.max(picture.width, picture.height));
  const canvas = make('canvas', {
    width: Math.max(1, Math.round(picture.width * scale)),
    height: Math.max(1, Math.round(picture.height * scale)),
  });
  const context = canvas.getContext('2d');
  context.imageSmoothingQuality = 'high';
  context.drawImage(picture, 0, 0, canvas.width, canvas.height);
  picture.close();
  return canvas.toDataURL(MEDIA_TYPE).split(',')[1];
}
