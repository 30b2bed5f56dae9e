/** Stands for a page that is still to come. */
import { pageName } from './address.js';
import { byId } from './dom.js';
import { openPage } from './page.js';

byId('later-title').dataset.t = `page.${pageName}`;
await openPage();
