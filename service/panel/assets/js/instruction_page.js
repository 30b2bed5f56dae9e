/** The user's instructions: what the service is told about how to translate. */
import { byId } from './dom.js';
import { t } from './i18n.js';
import { openLocalOffer } from './local_offer.js';
import { openPage } from './page.js';
import { Shelf } from './shelf.js';

const shelf = new Shelf({
  kind: 'instructions',
  empty: { content: '' },
  newTitle: 'terms.newInstruction',
  deletion: () => ({
    title: t('terms.deleteInstruction', { name: shelf.item.name }),
    text: t('terms.deleteInstructionText'),
  }),
  draw: () => {
    // Writing the same text anew would move the caret.
    if (byId('content').value !== shelf.item.content) byId('content').value = shelf.item.content;
    drawLength();
  },
});

function drawLength() {
  const { value, maxLength } = byId('content');
  byId('length').textContent = t('terms.length', { used: value.length, limit: maxLength });
}

byId('content').addEventListener('input', () => {
  shelf.item.content = byId('content').value;
  drawLength();
  shelf.changed();
});
shelf.open();
const offer = openLocalOffer(() => void shelf.load());
await openPage();
await shelf.load();
await offer.look();
